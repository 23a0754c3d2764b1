// The product's shortcuts over real applications: they fire, once, whatever the keyboard is set to, and the application
// in front is left as it was.

#include "desktop/ProgramFixture.h"

namespace orvesa::desktop {

using namespace Qt::StringLiterals;
using service::ServiceRequest;

class ProgramShortcuts : public ProgramFixture {
protected:
    void SetUp() override
    {
        setUp();
        service.setResponder([](const ServiceRequest &) { return answer(u"answered"_s); });
        program->start();
    }
};

TEST_F(ProgramShortcuts, TypingGoesOnLetterForLetterInAQt5Editor)
{
    // Its menu bar takes the keyboard when Alt goes down and up with nothing in between.
    Process &process = desktop->launch(u"featherpad"_s, {u"--standalone"_s});
    desktop->windows().awaitActive(desktop->windows().awaitWindow({.pid = process.pid()}));
    const Accessible content = desktop->accessibles().await(process.pid(), u"text"_s);
    waitUntil([&] { return content.has(AccessibleState::focused); }, u"the editor's text to have the focus"_s);
    QString typed;
    for (int round = 0; round < 40; ++round) {
        if (round % 2 == 0)
            desktop->keyboard().pressAtOnce(u"Alt+d"_s);
        else
            desktop->keyboard().press(u"Alt+d"_s);
        const QString letter(QChar(u'a' + round % 26));
        desktop->keyboard().type(letter);
        typed += letter;
        ASSERT_TRUE(happensWithin(usualDeadline, [&] { return content.text() == typed; }))
            << "after press " << round + 1 << ": " << content.text().toStdString();
    }
    EXPECT_TRUE(desktop->keyboard().keysDown().empty());
}

} // namespace orvesa::desktop
