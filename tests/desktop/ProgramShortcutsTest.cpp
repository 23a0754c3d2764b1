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

    void expectRequestAfter(const QString &combination, const QString &where)
    {
        const std::size_t before = service.requests().size();
        desktop->keyboard().press(combination);
        awaitRequest(before, combination + u" over "_s + where);
    }
    void expectRequestAfterCode(xcb_keycode_t code, const QString &where)
    {
        const std::size_t before = service.requests().size();
        desktop->keyboard().keyDown(u"Alt"_s);
        desktop->keyboard().pressCode(code);
        desktop->keyboard().keyUp(u"Alt"_s);
        awaitRequest(before, where);
    }

    xcb_window_t front = 0; ///< the application's window

private:
    void awaitRequest(std::size_t before, const QString &where)
    {
        waitUntil([&] { return service.requests().size() > before; }, u"a request for "_s + where);
        EXPECT_EQ(desktop->windows().active(), front) << where.toStdString();
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
        desktop->keyboard().pressByHand(u"Alt+d"_s);
        const QString letter(QChar(u'a' + round % 26));
        desktop->keyboard().type(letter);
        typed += letter;
        ASSERT_TRUE(happensWithin(usualDeadline, [&] { return content.text() == typed; }))
            << "after press " << round + 1 << ": " << content.text().toStdString();
    }
    EXPECT_TRUE(desktop->keyboard().keysDown().empty());
}

TEST_F(ProgramShortcuts, FiresOverApplicationsInEveryLockState)
{
    const QString path = desktop->folders().write(u"home/text.txt"_s, "texto");
    const std::vector<std::pair<QString, QStringList>> applications{{u"mousepad"_s, {u"--disable-server"_s, path}},
                                                                    {u"featherpad"_s, {u"--standalone"_s, path}}};
    for (const auto &[name, arguments] : applications) {
        Process &process = desktop->launch(name, arguments);
        front = desktop->windows().awaitWindow({.pid = process.pid()});
        desktop->windows().awaitActive(front);
        desktop->keyboard().press(u"Ctrl+a"_s);
        for (const auto &lock : {u"Caps_Lock"_s, u"Num_Lock"_s, u"Caps_Lock"_s, u"Num_Lock"_s}) {
            desktop->keyboard().press(lock);
            expectRequestAfter(u"Alt+d"_s, name);
        }
        expectRequestAfter(u"Alt+s"_s, name);
        process.terminate();
        desktop->windows().awaitNoWindow({.pid = process.pid()});
    }
}

TEST_F(ProgramShortcuts, FiresByTheKeysPlaceOnEveryLayout)
{
    TextEditor over(*desktop, u"texto"_s);
    over.selectAll();
    front = over.window();
    // The key right of S, whatever it types; on the French layout the first letter of the row, Q, is A's place.
    for (const auto &layout : {u"us"_s, u"de"_s, u"fr"_s, u"jp"_s}) {
        ASSERT_EQ(desktop->runToEnd(u"setxkbmap"_s, {layout}).exitCode, 0);
        expectRequestAfterCode(40, layout);
    }
}

TEST_F(ProgramShortcuts, DoesNotFireWithAFurtherModifierAndOnceWhenHeld)
{
    editor = std::make_unique<TextEditor>(*desktop, u"texto"_s);
    editor->selectAll();
    desktop->keyboard().press(u"Alt+Shift+d"_s);
    desktop->keyboard().press(u"Ctrl+Alt+d"_s);
    processEventsFor(std::chrono::milliseconds(200));
    EXPECT_FALSE(program->isPanelShown());
    EXPECT_TRUE(service.requests().empty());
    desktop->keyboard().keyDown(u"Alt"_s);
    desktop->keyboard().keyDown(u"d"_s);
    processEventsFor(std::chrono::seconds(2)); // the server repeats held keys after 660 ms
    desktop->keyboard().keyUp(u"d"_s);
    desktop->keyboard().keyUp(u"Alt"_s);
    awaitResultWith(u"answered"_s);
    EXPECT_EQ(service.requests().size(), 1U);
}

TEST(ProgramShortcutsTaken, LeaveTheOthersWorkingAndSaySo)
{
    Desktop desktop;
    TranslateProgram program(desktop, TranslateProgram::pathBeside());
    // Another program that holds a key: the window manager, by its own configuration.
    desktop.folders().write(u"home/.config/openbox/rc.xml"_s,
                            "<openbox_config xmlns=\"http://openbox.org/3.4/rc\"><keyboard><keybind key=\"A-s\">"
                            "<action name=\"Focus\"/></keybind></keyboard></openbox_config>");
    ASSERT_EQ(desktop.runToEnd(u"openbox"_s, {u"--reconfigure"_s}).exitCode, 0);
    waitUntil([&] { return desktop.keyboard().isTaken(u"Alt+s"_s); }, u"the window manager to hold the key"_s);
    Process &process = program.start();
    EXPECT_TRUE(desktop.keyboard().isTaken(u"Alt+d"_s));
    EXPECT_TRUE(desktop.keyboard().isTaken(u"Alt+a"_s));
    const QByteArray line = "OrvesaTranslate: failed to register hotkey ⌥S for Polish Selection: "
                            "Failed to register global hotkey (status: -9878)";
    EXPECT_EQ(process.standardError().count(line), 1) << process.standardError().constData();
}

} // namespace orvesa::desktop
