#include "Platform/linux/PortalKeys.h"

#include "Platform/AdoptedDesktop.h"
#include "Platform/ModifierBits.h"

#include <gtest/gtest.h>

#include <QProcess>

#include <vector>

namespace orvesa {

using namespace Qt::StringLiterals;
using desktop::waitUntil;

namespace {

constexpr quint32 option = CarbonModifier::option;
constexpr quint32 shift = CarbonModifier::shift;

void expectUsual(PortalKeys &keys)
{
    EXPECT_EQ(keys.trigger(2, option, u"D"_s), u"ALT+d"_s);
    EXPECT_EQ(keys.trigger(2, option, {}), u"ALT+d"_s);
    EXPECT_EQ(keys.trigger(18, option | shift, u"!"_s), u"ALT+SHIFT+1"_s);
    EXPECT_EQ(keys.trigger(96, 0, u"F5"_s), u"F5"_s);
    EXPECT_EQ(keys.trigger(49, CarbonModifier::command, u"Space"_s), u"LOGO+space"_s);
    EXPECT_EQ(keys.trigger(36, CarbonModifier::control | shift, u"\u21a9"_s), u"CTRL+SHIFT+Return"_s);
    EXPECT_EQ(keys.trigger(83, option, u"1"_s), u"ALT+KP_End"_s);
    EXPECT_EQ(keys.trigger(1000, option, u"D"_s), QString());
}

TEST(PortalKeysTest, WritesKeysAsTheDesktopDoes)
{
    X11Connection noServer("nowhere");
    PortalKeys keys(noServer, [] {});
    expectUsual(keys);
    EXPECT_EQ(keys.trigger(16, option, u"Z"_s), u"ALT+z"_s);
    EXPECT_EQ(keys.trigger(2, option, u"\u0412"_s), u"ALT+d"_s);
    EXPECT_EQ(keys.triggerWithFace(16, option, u"Z"_s), QString());
}

TEST(PortalKeysTest, AsksForWhatTheKeyTypesInTheLayoutOfTheFace)
{
    tests::AdoptedDesktop desktop(tests::screenOnly());
    X11Connection connection;
    PortalKeys keys(connection, [] {});
    expectUsual(keys);
    struct Case {
        QString layouts;
        quint32 macKeyCode;
        quint32 modifiers;
        QString label;
        QString trigger;
    };
    const std::vector<Case> cases{
        {u"de"_s, 16, option, u"Z"_s, u"ALT+z"_s},
        {u"de"_s, 6, option, u"Y"_s, u"ALT+y"_s},
        {u"de"_s, 26, option | shift, u"/"_s, u"ALT+SHIFT+7"_s},
        {u"fr"_s, 12, option, u"A"_s, u"ALT+a"_s},
        {u"fr"_s, 18, option, u"&"_s, u"ALT+ampersand"_s},
        // Never recorded: the program's own choice is shown as it is.
        {u"fr"_s, 0, option, u"A"_s, u"ALT+a"_s},
        {u"fr"_s, 0, option, {}, u"ALT+q"_s},
        {u"us(dvorak)"_s, 2, option, u"D"_s, u"ALT+d"_s},
        // Of several layouts the one that it was recorded in.
        {u"us,de"_s, 16, option, u"Z"_s, u"ALT+z"_s},
        {u"us,de"_s, 16, option, u"Y"_s, u"ALT+y"_s},
        {u"us,de"_s, 16, option, {}, u"ALT+y"_s},
        // Latin letters, wherever they are.
        {u"ru"_s, 2, option, u"\u0412"_s, u"ALT+d"_s},
        {u"ru,de"_s, 16, option, u"\u041d"_s, u"ALT+z"_s},
        {u"ru"_s, 2, option, u"D"_s, u"ALT+d"_s},
        {u"ru"_s, 49, option, u"Space"_s, u"ALT+space"_s},
        {u"il"_s, 0, option, u"\u05e9"_s, u"ALT+a"_s},
    };
    for (const Case &each : cases) {
        ASSERT_EQ(desktop->runToEnd(u"setxkbmap"_s, {each.layouts}).exitCode, 0);
        EXPECT_EQ(keys.trigger(each.macKeyCode, each.modifiers, each.label), each.trigger)
            << each.layouts.toStdString() << ' ' << each.macKeyCode << ' ' << each.label.toStdString();
    }
}

TEST(PortalKeysTest, LooksAgainWhenTheServerDidNotAnswer)
{
    tests::AdoptedDesktop desktop(tests::screenOnly());
    ASSERT_EQ(desktop->runToEnd(u"setxkbmap"_s, {u"fr"_s}).exitCode, 0);
    X11Connection connection;
    X11Connection other;
    ASSERT_TRUE(connection.isValid());
    xcb_grab_server(other.connection());
    EXPECT_TRUE(other.reply(xcb_get_input_focus_reply, xcb_get_input_focus(other.connection())));
    int changes = 0;
    PortalKeys keys(connection, [&changes] { ++changes; });
    EXPECT_EQ(keys.trigger(18, option, u"&"_s), u"ALT+1"_s);
    xcb_ungrab_server(other.connection());
    other.settle();
    waitUntil([&changes] { return changes > 0; }, u"the word about it"_s);
    EXPECT_EQ(keys.triggerWithFace(18, option, u"&"_s), u"ALT+ampersand"_s);
}

TEST(PortalKeysTest, TellsOnceWhenTheLayoutsChange)
{
    tests::AdoptedDesktop desktop(tests::screenOnly());
    X11Connection connection;
    int changes = 0;
    PortalKeys keys(connection, [&changes] { ++changes; });
    EXPECT_EQ(keys.trigger(16, option, {}), u"ALT+y"_s);
    // Without the event loop in between: however long it takes to start them, the changes are seen together.
    for (const QString &layout : {u"fr"_s, u"de"_s}) {
        ASSERT_EQ(QProcess::execute(u"setxkbmap"_s, {layout}), 0);
    }
    waitUntil([&changes] { return changes > 0; }, u"the word about it"_s);
    EXPECT_EQ(keys.trigger(16, option, {}), u"ALT+z"_s);
    EXPECT_EQ(keys.triggerWithFace(16, option, u"Z"_s), u"ALT+z"_s);
    EXPECT_EQ(keys.triggerWithFace(18, option, u"&"_s), QString());
    desktop::processEventsFor(std::chrono::milliseconds(1200));
    EXPECT_EQ(changes, 1);
}

} // namespace
} // namespace orvesa
