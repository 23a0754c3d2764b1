// The product and the parts of a session that end or start anew while it runs: the session manager, the accessibility
// bus, an application that has stopped.

#include "desktop/ProgramFixture.h"

#include <QElapsedTimer>
#include <QRegularExpression>

#include <signal.h>

namespace orvesa::desktop {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using service::ServiceRequest;

class ProgramSession : public ProgramFixture {
protected:
    /// A session manager, and the utility as its client.
    void startManaged()
    {
        setUp();
        m_manager = &desktop->launch(QStringLiteral(ORVESA_SESSION_MANAGER));
        const QString address = QString::fromUtf8(m_manager->readLine());
        program->start({{u"SESSION_MANAGER"_s, address}});
        awaitLine("registered");
        awaitLine("saved");
    }
    void tellManager(const QByteArray &command) { m_manager->write(command + '\n'); }
    /// Passes over other lines.
    void awaitLine(const QByteArray &line)
    {
        QByteArray read;
        while (read != line) {
            read = m_manager->readLine();
        }
    }
    [[nodiscard]] QByteArray managersLines() const { return m_manager->standardOutput(); }

    void openSettings()
    {
        ASSERT_EQ(program->run({}).exitCode, 0);
        m_settings = desktop->windows().awaitWindow({.pid = program->process().pid(), .title = u"Settings"_s});
    }
    void expectOrderlyEnd()
    {
        const ProcessResult result = program->process().awaitEnd();
        EXPECT_EQ(result.exitCode, 0) << result.standardError.constData();
        EXPECT_FALSE(result.crashed);
        EXPECT_FALSE(desktop->keyboard().isTaken(u"Alt+d"_s));
    }
    void awaitRequestWith(const QString &text)
    {
        waitUntil([&] { return !service.requests().empty() && service.requests().back().body.contains(text.toUtf8()); },
                  u"a request with '%1'"_s.arg(text));
    }

    xcb_window_t m_settings = 0;
    Process *m_manager = nullptr;
};

TEST_F(ProgramSession, EndsWithItAndIsNotBroughtBackByTheNext)
{
    startManaged();
    tellManager("shutdown");
    awaitLine("restart 3"); // never
    awaitLine("saved");
    expectOrderlyEnd();
    awaitLine("closed");
    EXPECT_FALSE(managersLines().contains("restart 0")) << managersLines().constData();
}

TEST_F(ProgramSession, EndsWithItAlsoWithTheSettingsOpenAndARequestPending)
{
    service.setScript({service::ServiceResponse::silence()});
    startManaged();
    editor = std::make_unique<TextEditor>(*desktop, u"pendiente"_s);
    editor->selectAll();
    pressTranslate();
    ASSERT_TRUE(service.waitForRequests(1));
    openSettings();
    tellManager("shutdown");
    expectOrderlyEnd();
    awaitLine("closed");
}

TEST_F(ProgramSession, GoesOnWhenItsEndIsCalledOff)
{
    startManaged();
    openSettings();
    tellManager("cancel");
    awaitLine("saved");
    processEventsFor(200ms); // for an end that should not come
    EXPECT_TRUE(program->process().isRunning());
    EXPECT_TRUE(desktop->windows().isMapped(m_settings));
    EXPECT_TRUE(desktop->keyboard().isTaken(u"Alt+d"_s));
    tellManager("shutdown");
    expectOrderlyEnd();
}

TEST_F(ProgramSession, CapturesAgainAfterTheAccessibilityBusWasStartedAnew)
{
    setUp();
    service.setResponder([](const ServiceRequest &) { return answer(u"answered"_s); });
    program->setVariable(u"QT_LOGGING_RULES"_s, u"orvesa.capture.debug=true"_s);
    startOver(u"before"_s);
    pressTranslate();
    awaitRequestWith(u"before"_s);

    desktop->endAccessibility();
    // Without it nothing can be read; the program says what is missing, and goes on.
    pressTranslate();
    waitUntil([&] { return desktop->windows().mapped({.pid = program->process().pid()}).size() > 1; },
              u"the question for the permission"_s);
    EXPECT_TRUE(program->process().isRunning());

    desktop->startAccessibilityAnew();
    editor = std::make_unique<TextEditor>(*desktop, u"afterwards"_s);
    editor->selectAll();
    pressTranslate();
    awaitRequestWith(u"afterwards"_s);
    const QString lines = QString::fromUtf8(program->process().standardError());
    static const QRegularExpression readIt(u"orvesa.capture: text after \\d+ ms: [^,]*accessibility \\d+ ms\n$"_s);
    EXPECT_TRUE(lines.contains(readIt)) << lines.toStdString();
}

TEST_F(ProgramSession, IsNotStoppedWithTheJobOfItsTerminal)
{
    setUp();
    service.setResponder([](const ServiceRequest &) { return answer(u"answered"_s); });
    startOver(u"texto"_s);
    // As Ctrl+Z does it. Stopped, it would hold the keyboard with the next press.
    ASSERT_EQ(::kill(static_cast<pid_t>(program->process().pid()), SIGTSTP), 0);
    pressTranslate();
    awaitRequestWith(u"texto"_s);
}

TEST_F(ProgramSession, AStoppedApplicationInFrontDoesNotHoldTheKeyboard)
{
    setUp();
    service.setResponder([](const ServiceRequest &) { return answer(u"answered"_s); });
    program->start();
    TextEditor other(*desktop, QString());
    for (const auto &[name, arguments, windowClass] :
         {std::tuple{u"mousepad"_s, QStringList{u"--disable-server"_s}, u"Mousepad"_s},
          std::tuple{u"featherpad"_s, QStringList{u"--standalone"_s}, u"featherpad"_s}}) {
        Process &front = desktop->launch(name, arguments);
        desktop->windows().awaitActive(desktop->windows().awaitWindow({.pid = front.pid()}));
        front.freeze();
        desktop->keyboard().keyDown(u"Alt"_s);
        desktop->keyboard().press(u"d"_s);
        desktop->keyboard().keyUp(u"Alt"_s);
        QElapsedTimer timer;
        timer.start();
        // The window manager gives the keyboard to another window, and keys reach it at once.
        const QString before = other.content().text();
        desktop->windows().focus(other.window());
        desktop->keyboard().type(u"x"_s);
        waitUntil([&] { return other.content().text() == before + u'x'; }, u"the typed letter"_s);
        EXPECT_LT(timer.elapsed(), 1'000) << name.toStdString();
        EXPECT_TRUE(desktop->keyboard().keysDown().empty());
        EXPECT_TRUE(program->process().isRunning());
        front.thaw();
        front.kill();
        desktop->windows().awaitNoWindow({.pid = front.pid()});
    }
}

} // namespace orvesa::desktop
