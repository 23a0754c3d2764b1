#include "Platform/linux/X11KeyboardEvents.h"

#include "Platform/AdoptedDesktop.h"
#include "Platform/KeyboardEventContract.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QByteArray>

#include <algorithm>
#include <vector>

#include <fcntl.h>
#include <unistd.h>
#include <xcb/xinput.h>

namespace orvesa {

using namespace Qt::StringLiterals;
using desktop::waitUntil;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using tests::AdoptedDesktop;

namespace {

constexpr quint16 macC = 8;
constexpr quint16 macV = 9;
// Evdev's positions, as X11 counts them.
constexpr xcb_keycode_t controlKey = 37;
constexpr xcb_keycode_t shiftKey = 50;
constexpr xcb_keycode_t altKey = 64;
constexpr xcb_keycode_t keyC = 54;
constexpr xcb_keycode_t keyD = 40;
constexpr xcb_keycode_t keyV = 55;

/// One event that a program's window got.
struct Key {
    bool isPress = false;
    xcb_keycode_t code = 0;
    quint16 state = 0; ///< before it
    bool operator==(const Key &) const = default;
};

void PrintTo(const Key &key, std::ostream *stream)
{
    *stream << (key.isPress ? "press " : "release ") << int{key.code} << " with " << key.state;
}

/// A program whose window has the keyboard.
class KeyReceiver final {
public:
    explicit KeyReceiver(const QByteArray &names)
    {
        xcb_connection_t *const raw = m_connection.connection();
        m_window = xcb_generate_id(raw);
        constexpr quint32 mask = XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE | XCB_EVENT_MASK_FOCUS_CHANGE |
                                 XCB_EVENT_MASK_STRUCTURE_NOTIFY;
        xcb_create_window(raw, XCB_COPY_FROM_PARENT, m_window, m_connection.root(), 0, 0, 100, 100, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &mask);
        xcb_change_property(raw, XCB_PROP_MODE_REPLACE, m_window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8,
                            static_cast<quint32>(names.size()), names.constData());
        m_token = m_connection.addEventHandler([this](const xcb_generic_event_t &event) {
            const auto type = event.response_type & 0x7f;
            m_isMapped = m_isMapped || type == XCB_MAP_NOTIFY;
            m_hasKeyboard = m_hasKeyboard || type == XCB_FOCUS_IN;
            if (type == XCB_KEY_PRESS || type == XCB_KEY_RELEASE) {
                const auto &key = reinterpret_cast<const xcb_key_press_event_t &>(event);
                m_keys.push_back({type == XCB_KEY_PRESS, key.detail, key.state});
            }
        });
        xcb_map_window(raw, m_window);
        m_connection.settle();
        waitUntil([this] { return m_isMapped; }, u"the window"_s);
        xcb_set_input_focus(raw, XCB_INPUT_FOCUS_POINTER_ROOT, m_window, XCB_CURRENT_TIME);
        m_connection.settle();
        waitUntil([this] { return m_hasKeyboard; }, u"the keyboard"_s);
    }

    /// Says that it answers whoever asks whether it is there, and does not.
    void promiseToAnswer()
    {
        const xcb_atom_t ping = m_connection.atom("_NET_WM_PING");
        xcb_change_property(m_connection.connection(), XCB_PROP_MODE_REPLACE, m_window,
                            m_connection.atom("WM_PROTOCOLS"), XCB_ATOM_ATOM, 32, 1, &ping);
        (void)m_connection.reply(xcb_get_input_focus_reply, xcb_get_input_focus(m_connection.connection()));
    }

    /// What came so far and all that the server has for it.
    std::vector<Key> keys()
    {
        (void)m_connection.reply(xcb_get_input_focus_reply, xcb_get_input_focus(m_connection.connection()));
        bool isDispatched = false;
        QMetaObject::invokeMethod(
            &m_connection, [&isDispatched] { isDispatched = true; }, Qt::QueuedConnection);
        waitUntil([&isDispatched] { return isDispatched; }, u"the events"_s);
        return std::exchange(m_keys, {});
    }
    void giveUpKeyboard()
    {
        xcb_set_input_focus(m_connection.connection(), XCB_INPUT_FOCUS_NONE, XCB_INPUT_FOCUS_NONE, XCB_CURRENT_TIME);
        (void)m_connection.reply(xcb_get_input_focus_reply, xcb_get_input_focus(m_connection.connection()));
    }

private:
    X11Connection m_connection;
    X11Connection::HandlerToken m_token = 0;
    xcb_window_t m_window = 0;
    bool m_isMapped = false;
    bool m_hasKeyboard = false;
    std::vector<Key> m_keys;
};

desktop::DesktopOptions bareDesktop()
{
    desktop::DesktopOptions options;
    options.windowManager = desktop::WindowManager::none;
    options.sessionBus = desktop::SessionBus::none;
    return options;
}

const QByteArray editorNames("probe\0Probe\0", 12);

class X11KeyboardEventsTest : public ::testing::Test {
protected:
    bool copy()
    {
        const bool isPosted = m_events.post(macC, KeyTransition::down, KeyboardFlags::command);
        (void)m_events.post(macC, KeyTransition::up, KeyboardFlags::command);
        return isPosted;
    }

    AdoptedDesktop m_desktop{bareDesktop()};
    X11Connection m_connection;
    bool m_isNoTerminal = false;
    X11KeyboardEvents m_events{m_connection, [this](qint64) { return m_isNoTerminal; }};
};

} // namespace

TEST_F(X11KeyboardEventsTest, KeepsTheContract)
{
    KeyReceiver editor(editorNames);
    const std::vector<std::pair<QString, quint32>> modifiers{
        {u"Alt"_s, KeyboardFlags::option}, {u"Ctrl"_s, KeyboardFlags::control}, {u"Shift"_s, KeyboardFlags::shift}};
    quint32 held = 0;
    const auto hold = [&](quint32 flags) {
        for (const auto &[name, flag] : modifiers) {
            if ((held & flag) != 0 && (flags & flag) == 0) {
                m_desktop->keyboard().keyUp(name);
            } else if ((held & flag) == 0 && (flags & flag) != 0) {
                m_desktop->keyboard().keyDown(name);
            }
        }
        held = flags;
    };
    const auto received = [&editor] {
        std::vector<tests::ReceivedKey> strokes;
        for (const Key &key : editor.keys()) {
            if (key.code == keyC || key.code == keyV) {
                // Command is Control here.
                const quint32 flags = ((key.state & XCB_MOD_MASK_CONTROL) != 0 ? KeyboardFlags::command : 0) |
                                      ((key.state & XCB_MOD_MASK_SHIFT) != 0 ? KeyboardFlags::shift : 0) |
                                      ((key.state & XCB_MOD_MASK_1) != 0 ? KeyboardFlags::option : 0);
                strokes.push_back({static_cast<quint16>(key.code == keyC ? macC : macV),
                                   key.isPress ? KeyTransition::down : KeyTransition::up, flags});
            }
        }
        return strokes;
    };
    tests::expectKeyboardEventContract(
        m_events, {.hold = hold, .received = received, .breakDown = [&editor] { editor.giveUpKeyboard(); }});
}

TEST_F(X11KeyboardEventsTest, CommandAndCIsControlAndC)
{
    KeyReceiver editor(editorNames);
    EXPECT_TRUE(copy());
    EXPECT_THAT(editor.keys(),
                ElementsAre(Key{true, controlKey, 0}, Key{true, keyC, XCB_MOD_MASK_CONTROL},
                            Key{false, keyC, XCB_MOD_MASK_CONTROL}, Key{false, controlKey, XCB_MOD_MASK_CONTROL}));
    EXPECT_THAT(m_desktop->keyboard().keysDown(), IsEmpty());
}

TEST_F(X11KeyboardEventsTest, TellsTheModifiersThatAreHeld)
{
    EXPECT_EQ(m_events.modifierFlags(), 0U);
    for (const auto &[name, flag] :
         {std::pair{u"Shift"_s, KeyboardFlags::shift}, std::pair{u"Ctrl"_s, KeyboardFlags::control},
          std::pair{u"Alt"_s, KeyboardFlags::option}, std::pair{u"Super"_s, KeyboardFlags::command}}) {
        m_desktop->keyboard().keyDown(name);
        EXPECT_EQ(m_events.modifierFlags(), flag) << name.toStdString();
        m_desktop->keyboard().keyUp(name);
        EXPECT_EQ(m_events.modifierFlags(), 0U);
    }
    m_desktop->keyboard().keyDown(u"Alt"_s);
    m_desktop->keyboard().keyDown(u"Shift"_s);
    EXPECT_EQ(m_events.modifierFlags(), KeyboardFlags::option | KeyboardFlags::shift);
    m_desktop->keyboard().keyUp(u"Shift"_s);
    m_desktop->keyboard().keyUp(u"Alt"_s);
    m_desktop->keyboard().press(u"Caps_Lock"_s);
    EXPECT_EQ(m_events.modifierFlags(), 0U) << "a lock is not held";
    m_desktop->keyboard().press(u"Caps_Lock"_s);
}

TEST_F(X11KeyboardEventsTest, LetsGoOfTheShortcutsKeysAndPutsItsModifierBack)
{
    KeyReceiver editor(editorNames);
    m_desktop->keyboard().keyDown(u"Alt"_s);
    m_desktop->keyboard().keyDown(u"d"_s);
    (void)editor.keys();
    EXPECT_TRUE(copy());
    constexpr quint16 both = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1;
    // Alt never comes or goes alone, which would open menus, and no letter of the user's comes with Control.
    EXPECT_THAT(editor.keys(), ElementsAre(Key{false, keyD, XCB_MOD_MASK_1}, Key{true, controlKey, XCB_MOD_MASK_1},
                                           Key{false, altKey, both}, Key{true, keyC, XCB_MOD_MASK_CONTROL},
                                           Key{false, keyC, XCB_MOD_MASK_CONTROL},
                                           Key{true, altKey, XCB_MOD_MASK_CONTROL}, Key{false, controlKey, both}));
    EXPECT_THAT(m_desktop->keyboard().keysDown(), ElementsAre(altKey));
    EXPECT_EQ(m_events.modifierFlags(), KeyboardFlags::option);
    m_desktop->keyboard().keyUp(u"d"_s);
    m_desktop->keyboard().keyUp(u"Alt"_s);
    EXPECT_THAT(m_desktop->keyboard().keysDown(), IsEmpty());
}

TEST_F(X11KeyboardEventsTest, LeavesUpWhatTheUserLetGoOfMeanwhile)
{
    KeyReceiver editor(editorNames);
    m_desktop->keyboard().keyDown(u"Alt"_s);
    m_desktop->keyboard().keyDown(u"Super"_s);
    EXPECT_TRUE(m_events.post(macC, KeyTransition::down, KeyboardFlags::command));
    m_desktop->keyboard().keyUp(u"Alt"_s);
    EXPECT_TRUE(m_events.post(macC, KeyTransition::up, KeyboardFlags::command));
    EXPECT_EQ(m_events.modifierFlags(), KeyboardFlags::command) << "Super is still held, Alt is not";
    m_desktop->keyboard().keyUp(u"Super"_s);
    EXPECT_THAT(m_desktop->keyboard().keysDown(), IsEmpty());
}

TEST_F(X11KeyboardEventsTest, KeepsControlDownWhereItIsHeld)
{
    KeyReceiver editor(editorNames);
    m_desktop->keyboard().keyDown(u"Ctrl"_s);
    m_desktop->keyboard().keyDown(u"Shift"_s);
    (void)editor.keys();
    EXPECT_TRUE(copy());
    const auto keys = editor.keys();
    EXPECT_EQ(std::ranges::count(keys, controlKey, &Key::code), 0);
    EXPECT_NE(std::ranges::find(keys, Key{true, keyC, XCB_MOD_MASK_CONTROL}), keys.end());
    EXPECT_EQ(m_events.modifierFlags(), KeyboardFlags::control | KeyboardFlags::shift);
    m_desktop->keyboard().keyUp(u"Shift"_s);
    m_desktop->keyboard().keyUp(u"Ctrl"_s);
}

TEST_F(X11KeyboardEventsTest, GivesATerminalItsOwnKeys)
{
    KeyReceiver terminal(QByteArray("xfce4-terminal\0Xfce4-terminal\0", 30));
    EXPECT_TRUE(copy());
    const auto keys = terminal.keys();
    constexpr quint16 both = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_SHIFT;
    EXPECT_NE(std::ranges::find(keys, Key{true, keyC, both}), keys.end());
    EXPECT_EQ(std::ranges::count(keys, shiftKey, &Key::code), 2);
    EXPECT_THAT(m_desktop->keyboard().keysDown(), IsEmpty());
}

TEST_F(X11KeyboardEventsTest, SendsNothingToATerminalWithoutCopyKeys)
{
    KeyReceiver terminal(QByteArray("xterm\0XTerm\0", 12));
    m_desktop->keyboard().keyDown(u"Alt"_s);
    (void)terminal.keys();
    EXPECT_FALSE(copy());
    EXPECT_THAT(terminal.keys(), IsEmpty());
    m_desktop->keyboard().keyUp(u"Alt"_s);
}

TEST_F(X11KeyboardEventsTest, SendsNothingWhereATerminalMayHaveTheKeyboard)
{
    KeyReceiver editor(editorNames);
    const int terminal = ::open("/dev/ptmx", O_RDWR | O_NOCTTY | O_CLOEXEC);
    ASSERT_GE(terminal, 0);
    EXPECT_FALSE(copy()) << "a program that holds a terminal";
    EXPECT_THAT(editor.keys(), IsEmpty());
    m_isNoTerminal = true;
    EXPECT_TRUE(copy()) << "something else has the keyboard in it";
    ::close(terminal);
    m_isNoTerminal = false;
    EXPECT_TRUE(copy());
}

TEST_F(X11KeyboardEventsTest, PressesTheKeyThatTypesTheLetter)
{
    KeyReceiver editor(editorNames);
    ASSERT_EQ(m_desktop->runToEnd(u"setxkbmap"_s, {u"dvorak"_s}).exitCode, 0);
    EXPECT_TRUE(copy());
    constexpr xcb_keycode_t letterOnDvorak = 31; // where I is elsewhere
    const auto keys = editor.keys();
    EXPECT_NE(std::ranges::find(keys, Key{true, letterOnDvorak, XCB_MOD_MASK_CONTROL}), keys.end());
    ASSERT_EQ(m_desktop->runToEnd(u"setxkbmap"_s, {u"ru"_s}).exitCode, 0);
    EXPECT_TRUE(copy());
    const auto cyrillic = editor.keys();
    EXPECT_NE(std::ranges::find(cyrillic, Key{true, keyC, XCB_MOD_MASK_CONTROL}), cyrillic.end())
        << "a layout without the letter has its command at the place";
}

TEST_F(X11KeyboardEventsTest, PressesTheLettersKeyInEveryLayout)
{
    KeyReceiver editor(editorNames);
    ASSERT_EQ(m_desktop->runToEnd(u"setxkbmap"_s, {u"-layout"_s, u"dvorak,ru,us,de"_s}).exitCode, 0);
    constexpr xcb_keycode_t letterOnDvorak = 31;
    const std::vector<xcb_keycode_t> expected{letterOnDvorak, keyC, keyC, keyC};
    for (std::size_t layout = 0; layout < expected.size(); ++layout) {
        m_desktop->keyboard().lockLayout(static_cast<quint8>(layout));
        EXPECT_TRUE(copy());
        const auto keys = editor.keys();
        const auto isCopy = [&](const Key &key) {
            return key.isPress && key.code == expected[layout] && (key.state & XCB_MOD_MASK_CONTROL) != 0;
        };
        EXPECT_EQ(std::ranges::count_if(keys, isCopy), 1) << layout << ' ' << ::testing::PrintToString(keys);
        EXPECT_EQ(keys.size(), 4U) << layout;
    }
    m_desktop->keyboard().lockLayout(0);
}

TEST_F(X11KeyboardEventsTest, LearnsOfReleasesAfterTheServerWasBusy)
{
    KeyReceiver editor(editorNames);
    ASSERT_NE(m_connection.extension(xcb_input_id), nullptr);
    X11Connection busy;
    xcb_grab_server(busy.connection());
    ASSERT_TRUE(busy.reply(xcb_get_input_focus_reply, xcb_get_input_focus(busy.connection())));
    EXPECT_EQ(m_events.modifierFlags(), 0U) << "nothing is known";
    EXPECT_FALSE(copy()) << "what the keys do is not known";
    xcb_ungrab_server(busy.connection());
    busy.settle();
    EXPECT_THAT(editor.keys(), IsEmpty());
    m_desktop->keyboard().keyDown(u"Alt"_s);
    EXPECT_TRUE(m_events.post(macC, KeyTransition::down, KeyboardFlags::command));
    m_desktop->keyboard().keyUp(u"Alt"_s);
    EXPECT_TRUE(m_events.post(macC, KeyTransition::up, KeyboardFlags::command));
    EXPECT_THAT(m_desktop->keyboard().keysDown(), IsEmpty()) << "the user let go of it meanwhile";
}

TEST_F(X11KeyboardEventsTest, NeverAsksItsOwnProcessWhetherItIsThere)
{
    KeyReceiver own(editorNames);
    own.promiseToAnswer();
    EXPECT_TRUE(copy()) << "it waited for itself";
    const auto keys = own.keys();
    EXPECT_NE(std::ranges::find(keys, Key{true, keyC, XCB_MOD_MASK_CONTROL}), keys.end());
}

TEST_F(X11KeyboardEventsTest, SendsNothingToNobody)
{
    KeyReceiver editor(editorNames);
    editor.giveUpKeyboard();
    EXPECT_FALSE(copy());
    EXPECT_FALSE(m_events.post(macC, KeyTransition::up, KeyboardFlags::command)) << "nothing was pressed";
    EXPECT_FALSE(m_events.post(0x3f, KeyTransition::down, 0)) << "X11 keyboards have no such key";
}

TEST(X11KeyboardEventsWithoutDisplay, HasNoKeys)
{
    qunsetenv("DISPLAY");
    X11Connection connection;
    X11KeyboardEvents events(connection, [](qint64) { return true; });
    EXPECT_EQ(events.modifierFlags(), 0U);
    EXPECT_FALSE(events.post(macC, KeyTransition::down, KeyboardFlags::command));
    EXPECT_FALSE(events.post(macC, KeyTransition::up, KeyboardFlags::command));
}

} // namespace orvesa
