#include "Platform/linux/X11HotKeys.h"

#include "Platform/AdoptedDesktop.h"
#include "Platform/BusyServer.h"

#include <gtest/gtest.h>

#include <xcb/xtest.h>

namespace orvesa {

using namespace Qt::StringLiterals;
using desktop::happensWithin;
using desktop::processEventsFor;
using desktop::waitUntil;
using tests::AdoptedDesktop;
using tests::screenOnly;

namespace {

constexpr quint32 keyD = 2;
constexpr quint32 keyS = 1;
constexpr quint32 option = 0x800;
constexpr quint32 command = 0x100;
constexpr quint32 shift = 0x200;
constexpr quint32 control = 0x1000;
constexpr quint32 signature = 0x4B56484B;

class X11HotKeysTest : public ::testing::Test {
protected:
    X11HotKeysTest()
    {
        EXPECT_EQ(m_hotKeys.installHandler([this](HotKeyID id) {
            m_pressed.push_back(id.id);
            return HotKeyStatus::noErr;
        }),
                  HotKeyStatus::noErr);
    }

    [[nodiscard]] HotKeyRegistration add(quint32 key, quint32 modifiers, quint32 id)
    {
        return m_hotKeys.registerHotKey(key, modifiers, {signature, id});
    }
    void awaitPresses(std::size_t count)
    {
        waitUntil([this, count] { return m_pressed.size() >= count; }, u"the shortcut's press"_s);
        EXPECT_EQ(m_pressed.size(), count);
    }
    void expectNoPress()
    {
        processEventsFor(std::chrono::milliseconds(150));
        EXPECT_TRUE(m_pressed.empty());
    }

    AdoptedDesktop m_desktop{screenOnly()};
    X11Connection m_connection;
    X11HotKeys m_hotKeys{m_connection};
    std::vector<quint32> m_pressed;
};

} // namespace

TEST_F(X11HotKeysTest, ReportsAPressWithItsIdentifier)
{
    ASSERT_EQ(add(keyD, option, 7).status, HotKeyStatus::noErr);
    ASSERT_EQ(add(keyS, option, 8).status, HotKeyStatus::noErr);
    m_desktop->keyboard().press(u"Alt+s"_s);
    awaitPresses(1);
    m_desktop->keyboard().press(u"Alt+d"_s);
    awaitPresses(2);
    EXPECT_EQ(m_pressed, (std::vector<quint32>{8, 7}));
}

TEST_F(X11HotKeysTest, MapsEveryModifier)
{
    ASSERT_EQ(add(keyD, option | command | shift | control, 1).status, HotKeyStatus::noErr);
    ASSERT_EQ(add(keyD, command, 2).status, HotKeyStatus::noErr);
    m_desktop->keyboard().press(u"Super+d"_s);
    awaitPresses(1);
    m_desktop->keyboard().press(u"Ctrl+Alt+Shift+Super+d"_s);
    awaitPresses(2);
    EXPECT_EQ(m_pressed, (std::vector<quint32>{2, 1}));
}

TEST_F(X11HotKeysTest, WorksInEveryLockState)
{
    ASSERT_EQ(add(keyD, option, 1).status, HotKeyStatus::noErr);
    std::size_t presses = 0;
    for (const auto &toggle : {u"Caps_Lock"_s, u"Num_Lock"_s, u"Caps_Lock"_s, u"Num_Lock"_s}) {
        m_desktop->keyboard().press(toggle);
        m_desktop->keyboard().press(u"Alt+d"_s);
        awaitPresses(++presses);
    }
}

TEST_F(X11HotKeysTest, IgnoresOtherModifiersAndKeys)
{
    ASSERT_EQ(add(keyD, option, 1).status, HotKeyStatus::noErr);
    for (const auto &other : {u"d"_s, u"Alt+Shift+d"_s, u"Ctrl+Alt+d"_s, u"Super+d"_s, u"Alt+s"_s}) {
        m_desktop->keyboard().press(other);
    }
    expectNoPress();
}

TEST_F(X11HotKeysTest, ActsOnceWhileTheKeyIsHeld)
{
    ASSERT_EQ(add(keyD, option, 1).status, HotKeyStatus::noErr);
    const auto control =
        m_connection.reply(xcb_get_keyboard_control_reply, xcb_get_keyboard_control(m_connection.connection()));
    ASSERT_TRUE(control);
    ASSERT_EQ(control->global_auto_repeat, XCB_AUTO_REPEAT_MODE_ON);
    m_desktop->keyboard().keyDown(u"Alt"_s);
    m_desktop->keyboard().keyDown(u"d"_s);
    processEventsFor(std::chrono::seconds(2)); // the server repeats held keys after 660 ms
    EXPECT_EQ(m_pressed.size(), 1U);
    m_desktop->keyboard().keyUp(u"d"_s);
    m_desktop->keyboard().keyDown(u"d"_s);
    awaitPresses(2);
    m_desktop->keyboard().keyUp(u"d"_s);
    m_desktop->keyboard().keyUp(u"Alt"_s);
}

TEST_F(X11HotKeysTest, RefusesADuplicateOfOurOwn)
{
    ASSERT_EQ(add(keyD, option, 1).status, HotKeyStatus::noErr);
    const HotKeyRegistration second = add(keyD, option, 2);
    EXPECT_EQ(second.status, HotKeyStatus::hotKeyExists);
    EXPECT_EQ(second.reference, 0U);
    m_desktop->keyboard().press(u"Alt+d"_s);
    awaitPresses(1);
    EXPECT_EQ(m_pressed, std::vector<quint32>{1});
}

TEST_F(X11HotKeysTest, SaysWhenAnotherProgramHasTheKey)
{
    X11Connection otherConnection;
    X11HotKeys other(otherConnection);
    const HotKeyRegistration taken = other.registerHotKey(keyD, option, {signature, 1});
    ASSERT_EQ(taken.status, HotKeyStatus::noErr);
    EXPECT_EQ(add(keyD, option, 2).status, HotKeyStatus::hotKeyExists);
    EXPECT_EQ(add(keyS, option, 3).status, HotKeyStatus::noErr) << "one conflict does not stop the others";
    ASSERT_EQ(other.unregisterHotKey(taken.reference), HotKeyStatus::noErr);
    waitUntil([&] { return add(keyD, option, 4).status == HotKeyStatus::noErr; }, u"the key to be free"_s);
    m_desktop->keyboard().press(u"Alt+d"_s);
    awaitPresses(1);
    EXPECT_EQ(m_pressed, std::vector<quint32>{4});
}

TEST_F(X11HotKeysTest, LeavesNoHalfOfARefusedGrabBehind)
{
    // Another program holds the combination in one lock state only.
    X11Connection otherConnection;
    ASSERT_TRUE(otherConnection.isValid());
    xcb_grab_key(otherConnection.connection(), 0, otherConnection.root(), XCB_MOD_MASK_1 | XCB_MOD_MASK_LOCK, 40,
                 XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    (void)otherConnection.property(otherConnection.root(), "_NET_SUPPORTED"); // the server has seen the grab
    EXPECT_EQ(add(keyD, option, 1).status, HotKeyStatus::hotKeyExists);
    X11Connection thirdConnection;
    xcb_connection_t *const third = thirdConnection.connection();
    const auto request = xcb_grab_key_checked(third, 0, thirdConnection.root(), XCB_MOD_MASK_1, 40, XCB_GRAB_MODE_ASYNC,
                                              XCB_GRAB_MODE_ASYNC);
    const X11Reply<xcb_generic_error_t> error(xcb_request_check(third, request));
    EXPECT_EQ(error, nullptr) << "the plain combination is free for others";
}

TEST_F(X11HotKeysTest, StopsAfterUnregistering)
{
    const HotKeyRegistration registration = add(keyD, option, 1);
    ASSERT_EQ(registration.status, HotKeyStatus::noErr);
    EXPECT_EQ(m_hotKeys.unregisterHotKey(registration.reference), HotKeyStatus::noErr);
    EXPECT_EQ(m_hotKeys.unregisterHotKey(registration.reference), HotKeyStatus::hotKeyInvalid);
    m_desktop->keyboard().press(u"Alt+d"_s);
    expectNoPress();
}

TEST_F(X11HotKeysTest, FollowsAModifierThatMoves)
{
    ASSERT_EQ(add(keyD, option, 1).status, HotKeyStatus::noErr);
    // Alt becomes a modifier that no key was.
    ASSERT_TRUE(tests::moveAlt(m_connection.connection()));
    m_connection.settle();
    ASSERT_NE(X11Modifiers::read(m_connection).alt, XCB_MOD_MASK_1);
    // The old combination is free for others as soon as the new one is ours.
    X11Connection otherConnection;
    xcb_connection_t *const other = otherConnection.connection();
    waitUntil(
        [&] {
            const auto request = xcb_grab_key_checked(other, 0, otherConnection.root(), XCB_MOD_MASK_1, 40,
                                                      XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
            return !X11Reply<xcb_generic_error_t>(xcb_request_check(other, request));
        },
        u"the shortcut to move"_s);
    m_desktop->keyboard().press(u"Alt+d"_s);
    awaitPresses(1);
}

TEST_F(X11HotKeysTest, KeepsThePlaceOfTheKeyUnderAnotherLayout)
{
    ASSERT_EQ(add(keyD, option, 1).status, HotKeyStatus::noErr);
    ASSERT_EQ(m_desktop->runToEnd(u"setxkbmap"_s, {u"ru"_s}).exitCode, 0);
    xcb_connection_t *const raw = m_connection.connection();
    for (const auto &[type, key] : {std::pair{XCB_KEY_PRESS, 64}, std::pair{XCB_KEY_PRESS, 40},
                                    std::pair{XCB_KEY_RELEASE, 40}, std::pair{XCB_KEY_RELEASE, 64}}) {
        xcb_test_fake_input(raw, static_cast<quint8>(type), static_cast<quint8>(key), XCB_CURRENT_TIME, 0, 0, 0, 0);
    }
    m_connection.settle();
    awaitPresses(1);
}

TEST_F(X11HotKeysTest, LeavesThreeGrabsAfterFiftyChanges)
{
    std::vector<HotKeyRef> references;
    for (quint32 change = 0; change < 50; ++change) {
        for (const HotKeyRef reference : references) {
            ASSERT_EQ(m_hotKeys.unregisterHotKey(reference), HotKeyStatus::noErr);
        }
        references.clear();
        for (const quint32 key : {change % 2 == 0 ? keyD : quint32{35}, keyS, quint32{0}}) {
            const HotKeyRegistration registration = add(key, option, key);
            ASSERT_EQ(registration.status, HotKeyStatus::noErr);
            references.push_back(registration.reference);
        }
    }
    // Counted by another program that tries every key in every lock state.
    X11Connection otherConnection;
    xcb_connection_t *const other = otherConnection.connection();
    for (const int locks : {0, int{XCB_MOD_MASK_LOCK}, int{XCB_MOD_MASK_2}, XCB_MOD_MASK_LOCK | XCB_MOD_MASK_2}) {
        int taken = 0;
        for (unsigned key = 8; key < 256; ++key) {
            const auto request =
                xcb_grab_key_checked(other, 0, otherConnection.root(), static_cast<quint16>(XCB_MOD_MASK_1 | locks),
                                     static_cast<xcb_keycode_t>(key), XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
            taken += X11Reply<xcb_generic_error_t>(xcb_request_check(other, request)) ? 1 : 0;
        }
        EXPECT_EQ(taken, 3);
    }
}

TEST_F(X11HotKeysTest, RefusesAKeyThatNoKeyboardHas)
{
    EXPECT_EQ(add(0x34, option, 1).status, HotKeyStatus::hotKeyInvalid);
    EXPECT_EQ(add(1000, option, 1).status, HotKeyStatus::hotKeyInvalid);
}

/// A window with the focus, and the keys that it is told of: "+37" for a press, "-37" for a release, "*" behind those
/// that another program has sent.
class FocusedWindow final {
public:
    FocusedWindow()
    {
        xcb_connection_t *const raw = m_connection.connection();
        const quint32 keys = XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE;
        const xcb_window_t window = xcb_generate_id(raw);
        xcb_create_window(raw, XCB_COPY_FROM_PARENT, window, m_connection.root(), 0, 0, 100, 100, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &keys);
        xcb_map_window(raw, window);
        xcb_set_input_focus(raw, XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME);
        m_token = m_connection.addEventHandler([this](const xcb_generic_event_t &event) { note(event); });
        m_connection.settle();
    }
    ~FocusedWindow() { m_connection.removeEventHandler(m_token); }
    Q_DISABLE_COPY_MOVE(FocusedWindow)

    [[nodiscard]] const QStringList &keys() const { return m_keys; }

private:
    void note(const xcb_generic_event_t &event)
    {
        const int type = event.response_type & 0x7f;
        if (type == XCB_KEY_PRESS || type == XCB_KEY_RELEASE) {
            const auto &key = reinterpret_cast<const xcb_key_press_event_t &>(event);
            m_keys.append((type == XCB_KEY_PRESS ? u"+"_s : u"-"_s) + QString::number(key.detail) +
                          (event.response_type != type ? u"*"_s : QString()));
        }
    }

    X11Connection m_connection;
    X11Connection::HandlerToken m_token = 0;
    QStringList m_keys;
};

TEST_F(X11HotKeysTest, LetsAltGoUpOnlyAfterATapOfControl)
{
    ASSERT_EQ(add(keyD, option, 1).status, HotKeyStatus::noErr);
    const FocusedWindow window;
    m_desktop->keyboard().pressAtOnce(u"Alt+d"_s);
    waitUntil([&] { return window.keys().contains(u"-64"_s); }, u"Alt to go up"_s);
    EXPECT_EQ(window.keys().mid(0, 4), (QStringList{u"+64"_s, u"+37*"_s, u"-37*"_s, u"-40"_s}))
        << window.keys().join(u' ').toStdString();
}

TEST_F(X11HotKeysTest, TapsNothingWhereControlIsHeldAnyway)
{
    // Its release by the tap would be taken for the real one.
    ASSERT_EQ(add(keyD, option | control, 1).status, HotKeyStatus::noErr);
    ASSERT_EQ(add(keyS, command, 2).status, HotKeyStatus::noErr);
    const FocusedWindow window;
    m_desktop->keyboard().press(u"Ctrl+Alt+d"_s);
    awaitPresses(1);
    m_desktop->keyboard().press(u"Super+s"_s); // opens no menu bar
    awaitPresses(2);
    waitUntil([&] { return window.keys().contains(u"-133"_s); }, u"the last key to go up"_s);
    EXPECT_TRUE(window.keys().filter(u"*"_s).isEmpty()) << window.keys().join(u' ').toStdString();
}

TEST(X11HotKeysOverAnEditor, LeaveItsMenuBarAlone)
{
    // A Qt 5 menu bar takes the keyboard when Alt goes down and up with nothing in between.
    AdoptedDesktop desktop;
    X11Connection connection;
    X11HotKeys hotKeys(connection);
    int presses = 0;
    ASSERT_EQ(hotKeys.installHandler([&presses](HotKeyID) {
        ++presses;
        return HotKeyStatus::noErr;
    }),
              HotKeyStatus::noErr);
    ASSERT_EQ(hotKeys.registerHotKey(keyD, option, {signature, 1}).status, HotKeyStatus::noErr);
    desktop::Process &process = desktop->launch(u"featherpad"_s, {u"--standalone"_s});
    desktop->windows().awaitActive(desktop->windows().awaitWindow({.pid = process.pid()}));
    const desktop::Accessible content = desktop->accessibles().await(process.pid(), u"text"_s);
    waitUntil([&] { return content.has(desktop::AccessibleState::focused); }, u"the text to have the focus"_s);
    QString typed;
    constexpr int rounds = 60;
    for (int round = 0; round < rounds; ++round) {
        // With Alt up first there is no release of another key between its press and its own.
        if (round % 2 == 0) {
            desktop->keyboard().rollByHand(u"Alt+d"_s);
        } else {
            desktop->keyboard().pressByHand(u"Alt+d"_s);
        }
        const QString letter(QChar(u'a' + round % 26));
        desktop->keyboard().type(letter);
        typed += letter;
        ASSERT_TRUE(happensWithin(std::chrono::seconds(5), [&] { return content.text() == typed; }))
            << "after press " << round + 1 << ": " << content.text().toStdString();
    }
    waitUntil([&presses] { return presses == rounds; }, u"every press"_s);
}

TEST(X11HotKeysWithoutDisplay, AreNotAvailable)
{
    qunsetenv("DISPLAY");
    X11Connection connection;
    X11HotKeys hotKeys(connection);
    EXPECT_FALSE(connection.isValid());
    EXPECT_EQ(hotKeys.installHandler([](HotKeyID) { return HotKeyStatus::noErr; }), HotKeyStatus::notAvailable);
    EXPECT_EQ(hotKeys.registerHotKey(keyD, option, {}).status, HotKeyStatus::notAvailable);
}

} // namespace orvesa
