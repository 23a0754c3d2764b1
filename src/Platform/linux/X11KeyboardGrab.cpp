#include "Platform/linux/X11KeyboardGrab.h"

#include "Platform/ModifierBits.h"
#include "Platform/linux/KeySymbols.h"
#include "Platform/linux/MacKeyCodes.h"
#include "Platform/linux/X11Event.h"
#include "Platform/linux/X11KeyboardExtension.h"

#include <chrono>
#include <utility>

namespace orvesa {

namespace {

/// How long keys that are still down may keep the keyboard from everybody else. The server takes a key for held for
/// ever when its release was lost, with the board that was unplugged or the program that had pressed it.
constexpr std::chrono::seconds longestHold{2};

quint32 flags(quint16 state, const X11Modifiers &modifiers)
{
    quint32 result = 0;
    const auto add = [&](unsigned bit, quint32 flag) { result |= (state & bit) != 0 ? flag : 0; };
    add(XCB_MOD_MASK_LOCK, KeyboardFlags::capsLock);
    add(XCB_MOD_MASK_SHIFT, KeyboardFlags::shift);
    add(XCB_MOD_MASK_CONTROL, KeyboardFlags::control);
    add(modifiers.alt, KeyboardFlags::option);
    add(modifiers.super, KeyboardFlags::command);
    return result;
}

} // namespace

X11KeyboardGrab::X11KeyboardGrab()
{
    m_patience.setSingleShot(true);
    m_patience.setInterval(longestHold);
    QObject::connect(&m_patience, &QTimer::timeout, &m_patience, [this] {
        m_heldKeys.clear();
        giveBackWhenIdle();
    });
}

X11KeyboardGrab::~X11KeyboardGrab()
{
    m_connection.removeEventHandler(m_token);
}

bool X11KeyboardGrab::prepare()
{
    if (!m_connection.isValid()) {
        return false;
    }
    if (m_token != 0) {
        return true;
    }
    xcb_connection_t *const raw = m_connection.connection();
    const xcb_query_extension_reply_t *const extension = m_connection.extension(xcb_xkb_id);
    if (extension == nullptr ||
        !m_connection.reply(xcb_xkb_use_extension_reply,
                            xcb_xkb_use_extension(raw, XCB_XKB_MAJOR_VERSION, XCB_XKB_MINOR_VERSION))) {
        return false; // perhaps only for now
    }
    // A held key then sends presses only, and its one release means that it was let go.
    constexpr quint32 detectable = XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT;
    const quint64 lateBefore = m_connection.lateReplies();
    (void)m_connection.reply(xcb_xkb_per_client_flags_reply,
                             xcb_xkb_per_client_flags(raw, XCB_XKB_ID_USE_CORE_KBD, detectable, detectable, 0, 0, 0));
    if (m_connection.lateReplies() != lateBefore) {
        return false;
    }
    m_token = m_connection.addEventHandler([this](const xcb_generic_event_t &event) { handle(event); });
    return true;
}

bool X11KeyboardGrab::begin(KeyMonitorPort::Handler handler)
{
    if (!prepare()) {
        return false;
    }
    m_handler = std::move(handler);
    m_patience.stop();
    if (m_isGrabbed) { // the last key of the time before is still down
        return true;
    }
    m_faces = X11KeyFaces::read(m_connection);
    const auto modifiers = X11Modifiers::ask(m_connection);
    if (!modifiers || !grab()) {
        m_handler = nullptr;
        return false;
    }
    m_modifiers = *modifiers;
    noteKeysThatAreDown();
    return true;
}

bool X11KeyboardGrab::grab()
{
    xcb_connection_t *const raw = m_connection.connection();
    const auto focus = m_connection.reply(xcb_get_input_focus_reply, xcb_get_input_focus(raw));
    const bool isWindow = focus && focus->focus > XCB_INPUT_FOCUS_FOLLOW_KEYBOARD;
    const auto answer = m_connection.reply(
        xcb_grab_keyboard_reply, xcb_grab_keyboard(raw, 0, isWindow ? focus->focus : m_connection.root(),
                                                   XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    m_isGrabbed = answer && answer->status == XCB_GRAB_STATUS_SUCCESS;
    if (!answer && m_connection.isValid()) {
        // A server that has not answered yet grants it later, when nobody would give it back.
        xcb_ungrab_keyboard(raw, XCB_CURRENT_TIME);
        m_connection.settle();
    }
    return m_isGrabbed;
}

void X11KeyboardGrab::noteKeysThatAreDown()
{
    // The key that pressed the control is often one of them, and neither it nor its repeats are meant.
    m_heldKeys.clear();
    const auto keys = m_connection.reply(xcb_query_keymap_reply, xcb_query_keymap(m_connection.connection()));
    for (unsigned code = 0; keys && code < sizeof(keys->keys) * 8; ++code) {
        const auto keyCode = static_cast<xcb_keycode_t>(code);
        if (((keys->keys[code / 8] >> (code % 8)) & 1U) != 0 && !m_faces.isModifier(keyCode, 0)) {
            m_heldKeys.insert(keyCode);
        }
    }
}

void X11KeyboardGrab::end()
{
    m_handler = nullptr;
    giveBackWhenIdle();
    if (m_isGrabbed) {
        m_patience.start();
    }
}

void X11KeyboardGrab::giveBackWhenIdle()
{
    if (!m_isGrabbed || m_handler || !m_heldKeys.empty()) {
        return;
    }
    m_isGrabbed = false;
    m_patience.stop();
    if (m_connection.isValid()) {
        xcb_ungrab_keyboard(m_connection.connection(), XCB_CURRENT_TIME);
        m_connection.settle();
    }
}

void X11KeyboardGrab::handle(const xcb_generic_event_t &event)
{
    const auto type = eventTypeOf(event);
    if (type == XCB_KEY_PRESS) {
        press(reinterpret_cast<const xcb_key_press_event_t &>(event));
    } else if (type == XCB_KEY_RELEASE) {
        m_heldKeys.erase(reinterpret_cast<const xcb_key_release_event_t &>(event).detail);
        giveBackWhenIdle();
    }
}

void X11KeyboardGrab::press(const xcb_key_press_event_t &event)
{
    if (!m_isGrabbed || m_faces.isModifier(event.detail, event.state) || !m_heldKeys.insert(event.detail).second) {
        return;
    }
    if (const auto known = m_handler ? translated(event) : std::nullopt) {
        const KeyMonitorPort::Handler handler = m_handler; // it may end the grab
        handler(*known);
    }
}

std::optional<MonitoredKeyPress> X11KeyboardGrab::translated(const xcb_key_press_event_t &event) const
{
    quint32 keyCode = MonitoredKeyPress::unknownKeyCode;
    if (m_faces.plainSymbol(event.detail, event.state) == KeySymbols::escape) {
        keyCode = MacKeyCodes::escape; // wherever the layout has put the way out
    } else if (const auto known = MacKeyCodes::fromX11(event.detail)) {
        keyCode = *known;
    }
    return MonitoredKeyPress{.keyCode = keyCode,
                             .modifierFlags = flags(event.state, m_modifiers),
                             .characters = m_faces.characters(event.detail, event.state)};
}

} // namespace orvesa
