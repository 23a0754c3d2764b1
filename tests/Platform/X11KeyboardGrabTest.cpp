#include "Platform/linux/X11KeyboardGrab.h"

#include "Platform/AdoptedDesktop.h"
#include "Platform/BusyServer.h"

#include <gtest/gtest.h>

#include <QTimer>

#include <vector>

namespace orvesa {

using namespace Qt::StringLiterals;
using desktop::waitUntil;
using tests::AdoptedDesktop;
using tests::screenOnly;

TEST(X11KeyboardGrabTest, TellsPlacesAndWhatTheLayoutTypesThere)
{
    AdoptedDesktop desktop(screenOnly());
    X11KeyboardGrab grab;
    std::vector<MonitoredKeyPress> presses;
    const auto record = [&] {
        ASSERT_TRUE(grab.begin([&presses](const MonitoredKeyPress &press) { presses.push_back(press); }));
    };
    struct Key {
        QString layout;
        xcb_keycode_t code;
        bool shift;
        quint32 macCode;
        QString characters;
    };
    const std::vector<Key> keys{
        {u"us"_s, 24, false, 12, u"q"_s},      {u"fr"_s, 24, false, 12, u"a"_s},    {u"fr"_s, 10, false, 18, u"&"_s},
        {u"fr"_s, 10, true, 18, u"1"_s},       {u"de"_s, 29, false, 16, u"z"_s},    {u"de"_s, 20, false, 27, u"ß"_s},
        {u"de"_s, 21, false, 24, u"\u00B4"_s}, {u"fr"_s, 34, false, 33, u"^"_s},    {u"de"_s, 94, false, 10, u"<"_s},
        {u"jp"_s, 132, false, 93, u"\\"_s},    {u"jp"_s, 97, false, 94, u"\\"_s},   {u"ru"_s, 40, false, 2, u"в"_s},
        {u"us"_s, 87, false, 83, u"1"_s},      {u"us"_s, 9, false, 53, u"\u001b"_s}};
    for (const Key &key : keys) {
        ASSERT_EQ(desktop->runToEnd(u"setxkbmap"_s, {key.layout}).exitCode, 0);
        presses.clear();
        record();
        if (key.shift) {
            desktop->keyboard().keyDown(u"Shift"_s);
        }
        desktop->keyboard().pressCode(key.code);
        if (key.shift) {
            desktop->keyboard().keyUp(u"Shift"_s);
        }
        waitUntil([&presses] { return !presses.empty(); }, u"the press"_s);
        ASSERT_EQ(presses.size(), 1U);
        EXPECT_EQ(presses[0].keyCode, key.macCode) << key.layout.toStdString() << ' ' << int{key.code};
        EXPECT_EQ(presses[0].characters.toStdString(), key.characters.toStdString());
        EXPECT_EQ(presses[0].modifierFlags, key.shift ? 0x20000U : 0U);
        grab.end();
    }
}

namespace {

/// Whether another program could take the keyboard.
bool isKeyboardFree(X11Connection &other)
{
    xcb_connection_t *const raw = other.connection();
    const auto answer =
        other.reply(xcb_grab_keyboard_reply, xcb_grab_keyboard(raw, 0, other.root(), XCB_CURRENT_TIME,
                                                               XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    xcb_ungrab_keyboard(raw, XCB_CURRENT_TIME);
    other.settle();
    return answer && answer->status == XCB_GRAB_STATUS_SUCCESS;
}

} // namespace

TEST(X11KeyboardGrabTest, TakesNothingLaterFromAServerThatWasBusy)
{
    AdoptedDesktop desktop(screenOnly());
    X11Connection other;
    X11KeyboardGrab grab;
    const auto begin = [&grab] { return grab.begin([](const MonitoredKeyPress &) {}); };
    ASSERT_TRUE(begin());
    grab.end();
    tests::BusyServer busy;
    EXPECT_FALSE(begin());
    busy.letGo();
    EXPECT_TRUE(isKeyboardFree(other));
    EXPECT_TRUE(begin());
}

TEST(X11KeyboardGrabTest, KeepsNobodyFromTheKeyboardForAKeyThatNeverComesUp)
{
    AdoptedDesktop desktop(screenOnly());
    X11Connection other;
    const auto isFree = [&other] { return isKeyboardFree(other); };
    X11KeyboardGrab grab;
    desktop->keyboard().keyDown(u"k"_s);
    ASSERT_TRUE(grab.begin([](const MonitoredKeyPress &) {}));
    EXPECT_FALSE(isFree());
    grab.end();
    EXPECT_FALSE(isFree()) << "a finger may still be on it";
    QTimer look; // the server tells nobody of a grab that ends
    look.start(std::chrono::milliseconds(100));
    waitUntil(isFree, u"the keyboard to be free"_s, std::chrono::seconds(3));
    desktop->keyboard().keyUp(u"k"_s);
}

} // namespace orvesa
