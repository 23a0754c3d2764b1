// The product when it is told to end, and when what it stands on goes away.

#include "desktop/ProgramFixture.h"

#include <signal.h>

namespace orvesa::desktop {

using namespace Qt::StringLiterals;
using service::ServiceRequest;

class ProgramEnd : public ProgramFixture {
protected:
    void expectOrderlyEnd()
    {
        const ProcessResult result = program->process().awaitEnd();
        EXPECT_EQ(result.exitCode, 0) << result.standardError.constData();
        EXPECT_FALSE(result.crashed);
        EXPECT_FALSE(desktop->keyboard().isTaken(u"Alt+d"_s));
    }
};

TEST_F(ProgramEnd, FollowsSignals)
{
    setUp();
    for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
        program->start();
        ASSERT_EQ(::kill(static_cast<pid_t>(program->process().pid()), number), 0);
        expectOrderlyEnd();
    }
}

TEST_F(ProgramEnd, FollowsASignalWithASettingsWindowOpenAndARequestPending)
{
    setUp();
    service.setScript({service::ServiceResponse::silence()});
    startOver(u"pendiente"_s);
    pressTranslate();
    ASSERT_TRUE(service.waitForRequests(1));
    ASSERT_EQ(program->run({}).exitCode, 0);
    desktop->windows().awaitWindow({.pid = program->process().pid(), .title = u"Settings"_s});
    ASSERT_EQ(::kill(static_cast<pid_t>(program->process().pid()), SIGTERM), 0);
    expectOrderlyEnd();
}

TEST_F(ProgramEnd, HasTheMainMenusKeysInItsWindow)
{
    setUp();
    program->start();
    const auto open = [this] {
        ASSERT_EQ(program->run({}).exitCode, 0);
        desktop->windows().awaitActive(
            desktop->windows().awaitWindow({.pid = program->process().pid(), .title = u"Settings"_s}));
    };
    open();
    desktop->keyboard().press(u"Ctrl+w"_s);
    desktop->windows().awaitNoWindow({.pid = program->process().pid()});
    EXPECT_TRUE(program->process().isRunning());
    open();
    desktop->keyboard().press(u"Ctrl+q"_s);
    expectOrderlyEnd();
}

TEST_F(ProgramEnd, HasTheMainMenusKeysInThePanelThatHasTheKeyboard)
{
    setUp();
    service.setResponder([](const ServiceRequest &) { return answer(u"answered"_s); });
    startOver(u"texto"_s);
    const auto clickIntoPanel = [this] {
        desktop->windows().focus(editor->window());
        pressTranslate();
        awaitResultWith(u"answered"_s);
        const xcb_window_t panel = desktop->windows().awaitWindow({.pid = program->process().pid()});
        desktop->pointer().clickAt(desktop->windows().geometry(panel).topLeft() + QPoint(150, 6));
        desktop->windows().awaitActive(panel);
    };
    clickIntoPanel();
    desktop->keyboard().press(u"Ctrl+w"_s);
    desktop->windows().awaitNoWindow({.pid = program->process().pid()});
    EXPECT_TRUE(program->process().isRunning());
    desktop->pointer().moveTo(editor->middle());
    clickIntoPanel();
    desktop->keyboard().press(u"Ctrl+q"_s);
    expectOrderlyEnd();
}

TEST_F(ProgramEnd, IsAskedForActionsWithoutLoadingWhatDrawsWindows)
{
    setUp();
    program->start();
    // What the dynamic linker would load for the process that asks.
    const QByteArray libraries =
        desktop->runToEnd(TranslateProgram::pathBeside(), {}, {{u"LD_TRACE_LOADED_OBJECTS"_s, u"1"_s}}).standardOutput;
    EXPECT_TRUE(libraries.contains("libQt6DBus")) << libraries.constData();
    for (const auto *const library : {"libQt6Gui", "libQt6Widgets", "libQt6Network", "libQt6Svg", "libxcb"})
        EXPECT_FALSE(libraries.contains(library)) << library;

    EXPECT_EQ(program->run({u"--perform"_s, u"settings"_s}).exitCode, 0);
}

TEST_F(ProgramEnd, EndsWithTheXServerAndDoesNotCrash)
{
    setUp();
    program->start();
    const qint64 server = desktop->processOf("Xvfb");
    ASSERT_NE(server, 0);
    ASSERT_EQ(::kill(static_cast<pid_t>(server), SIGKILL), 0);
    const ProcessResult result = program->process().awaitEnd();
    EXPECT_FALSE(result.crashed) << result.standardError.constData();
    EXPECT_EQ(result.exitCode, 1);
}

TEST_F(ProgramEnd, GoesOnWithoutTheSessionBus)
{
    setUp();
    service.setResponder([](const ServiceRequest &) { return answer(u"answered"_s); });
    startOver(u"autobús"_s);
    pressTranslate();
    awaitResultWith(u"answered"_s);
    const qint64 bus = desktop->processOf("dbus-daemon", "--nosyslog");
    ASSERT_NE(bus, 0);
    ASSERT_EQ(::kill(static_cast<pid_t>(bus), SIGKILL), 0);
    waitUntil([&] { return desktop->processOf("dbus-daemon", "--nosyslog") == 0; }, u"the bus to end"_s);
    processEventsFor(std::chrono::milliseconds(500)); // for an end that should not come
    EXPECT_TRUE(program->process().isRunning());
    EXPECT_TRUE(desktop->keyboard().isTaken(u"Alt+d"_s));
    // It can read nothing any more, and says so.
    desktop->pointer().clickAt(QPoint(1270, 890));
    waitUntil([&] { return !program->isPanelShown(); }, u"the panel to go"_s);
    pressTranslate();
    waitUntil([&] { return program->isPanelShown() || !program->process().isRunning(); }, u"the panel"_s);
    EXPECT_TRUE(program->process().isRunning());
    ASSERT_EQ(::kill(static_cast<pid_t>(program->process().pid()), SIGTERM), 0);
    expectOrderlyEnd();
}

TEST_F(ProgramEnd, ShowsItsIconWhenATrayForNotifierItemsComesLate)
{
    setUp();
    program->start();
    const QByteArray said = "no tray for the icon";
    EXPECT_EQ(program->process().standardError().count(said), 1) << program->process().standardError().constData();
    desktop->startTray(Tray::statusNotifier);
    const TrayItem item = desktop->tray().awaitItem(program->process().pid());
    EXPECT_TRUE(desktop->tray().menuTexts(item).contains(u"Translate Selection"_s));
    desktop->stopTray();
    desktop->startTray(Tray::statusNotifier);
    desktop->tray().awaitItem(program->process().pid());
    EXPECT_EQ(program->process().standardError().count(said), 1);
}

} // namespace orvesa::desktop
