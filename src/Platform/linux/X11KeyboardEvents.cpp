#include "Platform/linux/X11KeyboardEvents.h"

#include "Platform/linux/MacKeyCodes.h"
#include "Platform/linux/TerminalPrograms.h"
#include "Platform/linux/X11Event.h"
#include "Platform/linux/X11KeyFaces.h"
#include "Platform/linux/X11KeyboardExtension.h"
#include "Platform/linux/X11Modifiers.h"
#include "Platform/linux/X11Ping.h"
#include "Platform/linux/X11WindowOwner.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <ranges>
#include <utility>

#include <xcb/xinput.h>
#include <xcb/xtest.h>

namespace orvesa {

namespace {

constexpr quint16 macKeyCodeOfC = 8;
constexpr xcb_keysym_t symbolOfC = 'c';
constexpr int bitsPerByte = 8;

/// The keys that set each of the eight modifiers, from the server's map.
class ModifierKeys final {
public:
    explicit ModifierKeys(X11Connection &connection)
    {
        const auto map =
            connection.reply(xcb_get_modifier_mapping_reply, xcb_get_modifier_mapping(connection.connection()));
        if (!map) {
            return;
        }
        const auto *const keys = xcb_get_modifier_mapping_keycodes(map.get());
        for (std::size_t bit = 0; bit < m_keys.size(); ++bit) {
            for (std::size_t index = 0; index < map->keycodes_per_modifier; ++index) {
                if (const xcb_keycode_t key = keys[bit * map->keycodes_per_modifier + index]; key != 0) {
                    m_keys[bit].push_back(key);
                }
            }
        }
    }

    /// The keys of a modifier, the usual one first.
    [[nodiscard]] const std::vector<xcb_keycode_t> &of(quint16 mask) const
    {
        for (std::size_t bit = 0; bit < m_keys.size(); ++bit) {
            if (mask == 1U << bit) {
                return m_keys[bit];
            }
        }
        static const std::vector<xcb_keycode_t> none;
        return none;
    }

    [[nodiscard]] bool contains(xcb_keycode_t key) const
    {
        return std::ranges::any_of(m_keys, [key](const auto &keys) { return std::ranges::count(keys, key) != 0; });
    }

private:
    std::array<std::vector<xcb_keycode_t>, 8> m_keys;
};

bool has(const std::vector<xcb_keycode_t> &keys, xcb_keycode_t key)
{
    return std::ranges::find(keys, key) != keys.end();
}

} // namespace

X11KeyboardEvents::X11KeyboardEvents(X11Connection &connection, NoTerminalTest isNoTerminal)
    : m_connection(connection), m_isNoTerminal(std::move(isNoTerminal))
{
}

X11KeyboardEvents::~X11KeyboardEvents()
{
    end();
}

bool X11KeyboardEvents::prepare()
{
    if (!m_connection.isValid()) {
        return false;
    }
    if (m_prepared) {
        return true;
    }
    xcb_connection_t *const raw = m_connection.connection();
    const quint64 lateBefore = m_connection.lateReplies();
    const xcb_query_extension_reply_t *const input = m_connection.extension(xcb_input_id);
    const bool hasInput = input != nullptr && m_connection.reply(xcb_input_xi_query_version_reply,
                                                                 xcb_input_xi_query_version(raw, 2, 2)) != nullptr;
    // What is not known is asked for again at the next use.
    const auto isLate = [&] { return m_connection.lateReplies() != lateBefore; };
    if (isLate()) {
        return false;
    }
    const bool hasKeyboardExtension =
        m_connection.extension(xcb_xkb_id) != nullptr &&
        m_connection.reply(xcb_xkb_use_extension_reply,
                           xcb_xkb_use_extension(raw, XCB_XKB_MAJOR_VERSION, XCB_XKB_MINOR_VERSION)) != nullptr;
    if (isLate()) {
        return false;
    }
    // Without it nothing can be pressed, and the library would close the connection at the first try.
    if (m_connection.extension(xcb_test_id) == nullptr) {
        return false;
    }
    m_inputOpcode = hasInput ? input->major_opcode : quint8{0};
    m_hasKeyboardExtension = hasKeyboardExtension;
    m_prepared = true;
    return true;
}

quint32 X11KeyboardEvents::modifierFlags()
{
    if (!prepare()) {
        return 0;
    }
    const auto pointer =
        m_connection.reply(xcb_query_pointer_reply, xcb_query_pointer(m_connection.connection(), m_connection.root()));
    if (!pointer) {
        return 0;
    }
    const X11Modifiers modifiers = X11Modifiers::read(m_connection);
    quint32 flags = 0;
    for (const auto &[mask, flag] :
         {std::pair{quint16{XCB_MOD_MASK_SHIFT}, KeyboardFlags::shift},
          std::pair{quint16{XCB_MOD_MASK_CONTROL}, KeyboardFlags::control},
          std::pair{modifiers.alt, KeyboardFlags::option}, std::pair{modifiers.super, KeyboardFlags::command}}) {
        flags |= (pointer->mask & mask) != 0 ? flag : 0;
    }
    return flags;
}

bool X11KeyboardEvents::post(quint16 keyCode, KeyTransition transition, quint32 flags)
{
    if (!prepare()) {
        return false;
    }
    if (transition == KeyTransition::down) {
        end();
        return begin(keyCode, flags);
    }
    if (!m_stroke || m_stroke->macKeyCode != keyCode) {
        return false;
    }
    end();
    return true;
}

bool X11KeyboardEvents::begin(quint16 keyCode, quint32 flags)
{
    const auto key = keyFor(keyCode);
    const auto wantedFlags = keyCode == macKeyCodeOfC && flags == KeyboardFlags::command ? flagsForFocus(flags) : flags;
    if (!key || !wantedFlags) {
        return false;
    }
    const ModifierKeys modifierKeys(m_connection);
    const X11Modifiers modifiers = X11Modifiers::read(m_connection);
    std::vector<quint16> wanted;
    if ((*wantedFlags & (KeyboardFlags::command | KeyboardFlags::control)) != 0) {
        wanted.push_back(XCB_MOD_MASK_CONTROL);
    }
    if ((*wantedFlags & KeyboardFlags::shift) != 0) {
        wanted.push_back(XCB_MOD_MASK_SHIFT);
    }
    if ((*wantedFlags & KeyboardFlags::option) != 0) {
        wanted.push_back(modifiers.alt);
    }
    if (std::ranges::any_of(wanted, [&](quint16 mask) { return modifierKeys.of(mask).empty(); })) {
        return false;
    }

    listen(Listening::on);
    (void)releases();
    Stroke stroke{keyCode, *key, {}, {}};
    const std::vector<xcb_keycode_t> down = keysDown();
    // A letter that is still held would repeat with the stroke's modifiers.
    for (const xcb_keycode_t held : down) {
        if (!modifierKeys.contains(held)) {
            send(XCB_KEY_RELEASE, held);
        }
    }
    std::vector<xcb_keycode_t> kept;
    for (const quint16 mask : wanted) {
        const auto &keys = modifierKeys.of(mask);
        const auto held = std::ranges::find_if(keys, [&](xcb_keycode_t candidate) { return has(down, candidate); });
        if (held != keys.end()) {
            kept.push_back(*held);
        } else {
            send(XCB_KEY_PRESS, keys.front());
            stroke.pressed.push_back(keys.front());
        }
    }
    // Only now: a modifier that goes up right after it came down, alone, means "open the menu bar" to some toolkits.
    for (const xcb_keycode_t held : down) {
        if (modifierKeys.contains(held) && !has(kept, held)) {
            send(XCB_KEY_RELEASE, held);
            stroke.lifted.push_back(held);
        }
    }
    send(XCB_KEY_PRESS, stroke.key);
    m_connection.settle();
    m_stroke = std::move(stroke);
    return true;
}

void X11KeyboardEvents::end()
{
    if (!m_stroke || !m_connection.isValid()) {
        m_stroke.reset();
        return;
    }
    const Stroke stroke = *std::exchange(m_stroke, std::nullopt);
    send(XCB_KEY_RELEASE, stroke.key);
    putBack(stroke.lifted);
    for (const xcb_keycode_t pressed : std::views::reverse(stroke.pressed)) {
        send(XCB_KEY_RELEASE, pressed);
    }
    listen(Listening::off);
    // Returns once the server has done it all: before whatever the user, or this program, types next.
    (void)m_connection.reply(xcb_get_input_focus_reply, xcb_get_input_focus(m_connection.connection()));
}

void X11KeyboardEvents::putBack(const std::vector<xcb_keycode_t> &modifiers)
{
    // Each was let go once by this program; a further release was the user's, who no longer holds it.
    const auto isHeld = [](const std::vector<xcb_keycode_t> &released, xcb_keycode_t key) {
        return std::ranges::count(released, key) <= 1;
    };
    std::vector<xcb_keycode_t> released = releases();
    std::vector<xcb_keycode_t> again;
    for (const xcb_keycode_t key : modifiers) {
        if (isHeld(released, key)) {
            send(XCB_KEY_PRESS, key);
            again.push_back(key);
        }
    }
    if (m_inputOpcode == 0 || again.empty()) {
        return;
    }
    // What was let go while it was being pressed again would stay down for ever.
    const std::vector<xcb_keycode_t> late = releases();
    for (const xcb_keycode_t key : again) {
        if (has(late, key)) {
            send(XCB_KEY_RELEASE, key);
        }
    }
}

std::optional<quint32> X11KeyboardEvents::flagsForFocus(quint32 flags)
{
    const auto program = X11WindowOwner::withKeyboard(m_connection);
    if (!program) {
        return std::nullopt;
    }
    // A program that hangs would copy whenever it goes on, long after the clipboard was put back. This one does not
    // hang, and cannot answer as long as it waits for the answer.
    const auto process = X11WindowOwner::process(m_connection, program->window);
    if (process != QCoreApplication::applicationPid() && !X11Ping::answers(m_connection, program->window)) {
        return std::nullopt;
    }
    if (const auto keys = TerminalPrograms::copyKeys(program->instanceName, program->className)) {
        return *keys == TerminalPrograms::CopyKeys::controlShift ? std::optional(flags | KeyboardFlags::shift)
                                                                 : std::nullopt;
    }
    if (process && TerminalPrograms::holdsTerminal(*process) && !m_isNoTerminal(*process)) {
        return std::nullopt;
    }
    return flags;
}

std::optional<xcb_keycode_t> X11KeyboardEvents::keyFor(quint16 macKeyCode)
{
    const auto evdev = MacKeyCodes::toEvdev(macKeyCode);
    constexpr quint32 x11Offset = 8;
    constexpr quint32 greatest = 255;
    if (!evdev || *evdev + x11Offset > greatest) {
        return std::nullopt;
    }
    const auto place = static_cast<xcb_keycode_t>(*evdev + x11Offset);
    if (macKeyCode != macKeyCodeOfC) {
        return place;
    }
    // The command goes by the letter where the layout has it, which is not at this place in all of them.
    if (!m_hasKeyboardExtension) {
        return place;
    }
    const X11KeyFaces faces = X11KeyFaces::read(m_connection);
    const auto pointer =
        m_connection.reply(xcb_query_pointer_reply, xcb_query_pointer(m_connection.connection(), m_connection.root()));
    if (faces.isEmpty() || !pointer) {
        return std::nullopt; // the key at the place may be another command
    }
    const quint16 state = pointer->mask;
    const auto types = [&](unsigned key) {
        return faces.plainSymbol(static_cast<xcb_keycode_t>(key), state) == symbolOfC;
    };
    const auto keys = std::views::iota(0U, greatest + 1);
    const auto key = types(place) ? keys.end() : std::ranges::find_if(keys, types);
    return key == keys.end() ? place : static_cast<xcb_keycode_t>(*key);
}

std::vector<xcb_keycode_t> X11KeyboardEvents::keysDown()
{
    std::vector<xcb_keycode_t> down;
    const auto map = m_connection.reply(xcb_query_keymap_reply, xcb_query_keymap(m_connection.connection()));
    if (map) {
        for (std::size_t key = 0; key < sizeof map->keys * bitsPerByte; ++key) {
            if (((map->keys[key / bitsPerByte] >> (key % bitsPerByte)) & 1U) != 0) {
                down.push_back(static_cast<xcb_keycode_t>(key));
            }
        }
    }
    return down;
}

void X11KeyboardEvents::send(quint8 type, xcb_keycode_t key)
{
    xcb_test_fake_input(m_connection.connection(), type, key, XCB_CURRENT_TIME, XCB_WINDOW_NONE, 0, 0, 0);
}

void X11KeyboardEvents::listen(Listening listening)
{
    if (m_inputOpcode == 0) {
        return;
    }
    struct {
        xcb_input_event_mask_t head;
        quint32 mask;
    } selection{{XCB_INPUT_DEVICE_ALL, 1},
                listening == Listening::on ? quint32{XCB_INPUT_XI_EVENT_MASK_RAW_KEY_RELEASE} : 0};
    xcb_input_xi_select_events(m_connection.connection(), m_connection.root(), 1, &selection.head);
}

std::vector<xcb_keycode_t> X11KeyboardEvents::releases()
{
    std::vector<xcb_keycode_t> keys;
    if (m_inputOpcode == 0) {
        return keys;
    }
    const auto events = m_connection.takeEvents([this](const xcb_generic_event_t &event) {
        if (eventTypeOf(event) != XCB_GE_GENERIC) {
            return false;
        }
        const auto &generic = reinterpret_cast<const xcb_ge_generic_event_t &>(event);
        return generic.extension == m_inputOpcode && generic.event_type == XCB_INPUT_RAW_KEY_RELEASE;
    });
    for (const auto &event : events) {
        const auto &release = reinterpret_cast<const xcb_input_raw_key_release_event_t &>(*event);
        // Each comes from the device and once more from the keyboard that it is part of.
        if (release.deviceid == release.sourceid) {
            keys.push_back(static_cast<xcb_keycode_t>(release.detail));
        }
    }
    return keys;
}

} // namespace orvesa
