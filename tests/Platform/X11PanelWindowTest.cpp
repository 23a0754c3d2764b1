#include "Platform/AdoptedDesktop.h"
#include "Platform/linux/X11MouseMonitor.h"
#include "Platform/linux/X11StateSilence.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string_view>

namespace orvesa {

using namespace Qt::StringLiterals;
using desktop::MouseButton;
using desktop::processEventsFor;
using desktop::waitUntil;
using desktop::WindowManager;
using tests::AdoptedDesktop;
using tests::Mousepad;

class X11PanelWindowTest : public ::testing::TestWithParam<WindowManager> {
protected:
    static desktop::DesktopOptions options()
    {
        desktop::DesktopOptions options;
        options.windowManager = GetParam();
        options.keyStore = desktop::KeyStore::absent;
        return options;
    }

    AdoptedDesktop m_desktop{options()};
};

INSTANTIATE_TEST_SUITE_P(Managers, X11PanelWindowTest, ::testing::Values(WindowManager::openbox, WindowManager::xfwm4),
                         [](const auto &parameter) {
                             return parameter.param == WindowManager::openbox ? "openbox" : "xfwm4";
                         });

TEST_P(X11PanelWindowTest, FloatsWithoutTakingTheFocus)
{
    const Mousepad editor(*m_desktop);
    desktop::Windows &windows = m_desktop->windows();
    desktop::Process &probe = m_desktop->launch(QStringLiteral(ORVESA_PANEL_PROBE));
    const QByteArray identification = probe.readLine();
    ASSERT_TRUE(identification.startsWith("window ")) << identification.constData();
    const auto panel = static_cast<xcb_window_t>(identification.mid(7).toUInt());
    const QByteArray compositing = probe.readLine();
    EXPECT_TRUE(compositing == "compositing yes" || compositing == "compositing no");

    for (int round = 0; round < 3; ++round) { // a window manager forgets the states when a window is hidden
        probe.write("show\n");
        EXPECT_EQ(probe.readLine(), "show");
        waitUntil([&] { return windows.isMapped(panel); }, u"the panel"_s);
        const auto states = [&] { return windows.atoms(panel, "_NET_WM_STATE"); };
        const bool hasStates = desktop::happensWithin(desktop::usualDeadline, [&] {
            const auto now = states();
            // Openbox has no sticky state; there the desktop number alone says "on all of them".
            const bool isSticky = GetParam() == WindowManager::openbox || now.contains("_NET_WM_STATE_STICKY");
            return isSticky && windows.cardinals(panel, "_NET_WM_DESKTOP") == std::vector<quint32>{0xffffffff} &&
                   now.contains("_NET_WM_STATE_ABOVE") && now.contains("_NET_WM_STATE_SKIP_TASKBAR") &&
                   now.contains("_NET_WM_STATE_SKIP_PAGER");
        });
        EXPECT_TRUE(hasStates) << "round " << round << ": " << states().join(' ').constData();
        EXPECT_EQ(windows.atoms(panel, "_NET_WM_WINDOW_TYPE"), QList<QByteArray>{"_NET_WM_WINDOW_TYPE_UTILITY"});
        const auto timeWindow = windows.cardinals(panel, "_NET_WM_USER_TIME_WINDOW");
        EXPECT_EQ(windows.cardinals(timeWindow.empty() ? panel : timeWindow.front(), "_NET_WM_USER_TIME"),
                  std::vector<quint32>{0});
        EXPECT_TRUE(windows.isAbove(panel, editor.window));
        EXPECT_EQ(windows.active(), editor.window);
        EXPECT_EQ(windows.inputFocus(), editor.window);
        EXPECT_EQ(windows.frameGeometry(panel).size(), windows.geometry(panel).size()) << "no chrome";
        m_desktop->keyboard().type(u"x"_s);
        (void)m_desktop->accessibles().awaitReadable(
            editor.content, [&](const QString &now) { return now == u"x"_s.repeated(round + 1); },
            u"the editor to get the keys"_s);
        probe.write("hide\n");
        EXPECT_EQ(probe.readLine(), "hide");
        waitUntil([&] { return !windows.isMapped(panel); }, u"the panel to go"_s);
    }
}

TEST_P(X11PanelWindowTest, KeepsNewsOfStatesFromQtWhileAWindowAppears)
{
    X11Connection connection;
    X11StateSilence silence(connection);
    constexpr xcb_window_t panel = 7;
    const auto reachesQt = [&](xcb_window_t window, std::string_view property) {
        xcb_property_notify_event_t news{};
        news.response_type = XCB_PROPERTY_NOTIFY;
        news.window = window;
        news.atom = connection.atom(property);
        return !silence.nativeEventFilter("xcb_generic_event_t", &news, nullptr);
    };
    EXPECT_TRUE(reachesQt(panel, "_NET_WM_STATE"));
    silence.begin(panel);
    EXPECT_FALSE(reachesQt(panel, "_NET_WM_STATE"));
    EXPECT_FALSE(reachesQt(panel, "WM_STATE"));
    EXPECT_TRUE(reachesQt(panel, "_NET_FRAME_EXTENTS"));
    EXPECT_TRUE(reachesQt(panel + 1, "_NET_WM_STATE"));
    silence.end();
    EXPECT_TRUE(reachesQt(panel, "_NET_WM_STATE"));
}

TEST_P(X11PanelWindowTest, HearsClicksAnywhereButNoWheel)
{
    X11Connection connection;
    X11MouseMonitor monitor(connection);
    const Mousepad editor(*m_desktop);
    std::vector<QPoint> clicks;
    monitor.setMouseDownHandler([&clicks](QPoint place) { clicks.push_back(place); });
    const QPoint inside = m_desktop->windows().geometry(editor.window).center();
    m_desktop->pointer().clickAt(inside);
    waitUntil([&] { return !clicks.empty(); }, u"the click in a window"_s);
    m_desktop->pointer().clickAt(QPoint(1270, 890), MouseButton::right);
    waitUntil([&] { return clicks.size() > 1; }, u"the click on the background"_s);
    m_desktop->keyboard().press(u"Escape"_s); // a menu may have opened there
    m_desktop->pointer().moveTo(inside);
    m_desktop->pointer().click(MouseButton::wheelDown);
    m_desktop->pointer().click(MouseButton::wheelUp);
    m_desktop->pointer().click(MouseButton::middle);
    waitUntil([&] { return clicks.size() > 2; }, u"the middle button"_s);
    EXPECT_EQ(clicks, (std::vector<QPoint>{inside, QPoint(1270, 890), inside}));

    monitor.setMouseDownHandler({});
    int events = 0;
    (void)connection.addEventHandler([&events](const xcb_generic_event_t &event) {
        events += (event.response_type & 0x7f) == XCB_GE_GENERIC ? 1 : 0;
    });
    (void)connection.property(connection.root(), "_NET_ACTIVE_WINDOW"); // the server has seen the end of the monitoring
    m_desktop->pointer().click();
    processEventsFor(std::chrono::milliseconds(100));
    EXPECT_EQ(events, 0) << "nothing wakes the program without a handler";
    EXPECT_EQ(clicks.size(), 3U);
}

} // namespace orvesa
