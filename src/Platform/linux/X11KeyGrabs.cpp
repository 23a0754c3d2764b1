#include "Platform/linux/X11KeyGrabs.h"

#include "Platform/linux/X11Event.h"
#include "Platform/linux/X11KeyboardExtension.h"
#include "Platform/linux/X11Reply.h"

#include <QMetaObject>

#include <chrono>
#include <string_view>
#include <utility>
#include <vector>

#include <pthread.h>
#include <signal.h>
#include <xcb/xinput.h>

namespace orvesa {

namespace {

constexpr unsigned keyShift = 16;
/// Qt has every key go round through the accessibility bus before it looks at it, and loses the order in which keys
/// came when they came at the same moment, as from another program. Nothing tells when it is done; this is longer than
/// it takes, and shorter than any finger.
constexpr std::chrono::milliseconds timeForTheTap{3};
constexpr quint32 maskOfModifier = 0xffff;

xcb_window_t rootOf(xcb_connection_t *connection, int screenNumber)
{
    xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (int skipped = 0; skipped < screenNumber && screens.rem > 1; ++skipped) {
        xcb_screen_next(&screens);
    }
    return screens.data->root;
}

/// Key events carry the keyboard's group only for clients of this extension.
void announceKeyboardExtension(xcb_connection_t *connection)
{
    const xcb_query_extension_reply_t *const extension = xcb_get_extension_data(connection, &xcb_xkb_id);
    if (extension != nullptr && extension->present != 0) {
        const X11Reply<xcb_xkb_use_extension_reply_t> reply(xcb_xkb_use_extension_reply(
            connection, xcb_xkb_use_extension(connection, XCB_XKB_MAJOR_VERSION, XCB_XKB_MINOR_VERSION), nullptr));
    }
}

/// The input extension's number, or 0. From version 2.1 on its raw events come whoever holds the keyboard.
quint8 announceInputExtension(xcb_connection_t *connection)
{
    const xcb_query_extension_reply_t *const extension = xcb_get_extension_data(connection, &xcb_input_id);
    if (extension == nullptr || extension->present == 0) {
        return 0;
    }
    const X11Reply<xcb_input_xi_query_version_reply_t> reply(
        xcb_input_xi_query_version_reply(connection, xcb_input_xi_query_version(connection, 2, 2), nullptr));
    return reply ? extension->major_opcode : quint8{0};
}

xcb_atom_t atomOf(xcb_connection_t *connection, std::string_view name)
{
    const X11Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
        connection, xcb_intern_atom(connection, 0, static_cast<quint16>(name.size()), name.data()), nullptr));
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

} // namespace

X11KeyGrabs::X11KeyGrabs(PressHandler handler) : m_handler(std::move(handler)) {}

X11KeyGrabs::~X11KeyGrabs()
{
    stop();
}

bool X11KeyGrabs::open()
{
    if (m_opened) {
        return m_connection != nullptr && xcb_connection_has_error(m_connection) == 0;
    }
    m_opened = true;
    int screenNumber = 0;
    xcb_connection_t *const connection = xcb_connect(nullptr, &screenNumber);
    if (xcb_connection_has_error(connection) != 0) {
        xcb_disconnect(connection);
        return false;
    }
    m_connection = connection;
    // Ctrl+Z in the terminal that started this would stop it with the rest of its job. The next shortcut then held the
    // keyboard, and with it that terminal, where alone it could be let go on.
    ::signal(SIGTSTP, SIG_IGN);
    m_root = rootOf(connection, screenNumber);
    for (xcb_extension_t *const extension : {&xcb_xkb_id, &xcb_input_id}) {
        xcb_prefetch_extension_data(connection, extension); // one wait for both
    }
    announceKeyboardExtension(connection);
    m_inputOpcode = announceInputExtension(connection);
    m_embeddingInfo = atomOf(connection, "_XEMBED_INFO");
    m_wakeWindow = xcb_generate_id(connection);
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, m_wakeWindow, m_root, 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    // Signals are for the main thread.
    sigset_t all;
    sigset_t before;
    ::sigfillset(&all);
    ::pthread_sigmask(SIG_SETMASK, &all, &before);
    m_thread = std::thread([this] { readEvents(); });
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    return true;
}

void X11KeyGrabs::stop()
{
    if (m_connection == nullptr) {
        return;
    }
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = m_wakeWindow;
    message.type = XCB_ATOM_CARDINAL;
    // An event sent with no mask goes to the window's creator.
    xcb_send_event(m_connection, 0, m_wakeWindow, XCB_EVENT_MASK_NO_EVENT, reinterpret_cast<const char *>(&message));
    xcb_flush(m_connection);
    m_thread.join();
    xcb_disconnect(m_connection); // and with it all its grabs end
    m_connection = nullptr;
}

X11KeyGrabs::Outcome X11KeyGrabs::grab(xcb_keycode_t keyCode, std::span<const quint16> masks)
{
    if (!open()) {
        return Outcome::noServer;
    }
    std::vector<xcb_void_cookie_t> requests;
    requests.reserve(masks.size());
    for (const quint16 mask : masks) {
        requests.push_back(
            xcb_grab_key_checked(m_connection, 0, m_root, mask, keyCode, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_SYNC));
    }
    Outcome outcome = Outcome::granted;
    for (const xcb_void_cookie_t request : requests) {
        const X11Reply<xcb_generic_error_t> error(xcb_request_check(m_connection, request));
        if (error && outcome == Outcome::granted) {
            outcome = error->error_code == XCB_ACCESS ? Outcome::taken : Outcome::refused;
        }
    }
    if (xcb_connection_has_error(m_connection) != 0) {
        return Outcome::noServer;
    }
    if (outcome != Outcome::granted) {
        ungrab(keyCode, masks); // those that did succeed
    }
    return outcome;
}

void X11KeyGrabs::ungrab(xcb_keycode_t keyCode, std::span<const quint16> masks)
{
    if (m_connection == nullptr) {
        return;
    }
    for (const quint16 mask : masks) {
        xcb_ungrab_key(m_connection, keyCode, m_root, mask);
    }
    xcb_flush(m_connection);
}

void X11KeyGrabs::setLoneModifier(quint16 modifier, xcb_keycode_t tappedKey)
{
    m_loneModifier = modifier | (quint32{tappedKey} << keyShift);
}

void X11KeyGrabs::readEvents()
{
    while (const X11Reply<xcb_generic_event_t> event{xcb_wait_for_event(m_connection)}) {
        const auto type = eventTypeOf(*event);
        if (type == XCB_KEY_PRESS) {
            press(reinterpret_cast<const xcb_key_press_event_t &>(*event));
        } else if (type == XCB_GE_GENERIC) {
            const auto &raw = reinterpret_cast<const xcb_input_raw_key_release_event_t &>(*event);
            if (raw.extension == m_inputOpcode && raw.event_type == XCB_INPUT_RAW_KEY_RELEASE) {
                release(static_cast<xcb_keycode_t>(raw.detail));
            }
        } else if (type == XCB_CLIENT_MESSAGE &&
                   reinterpret_cast<const xcb_client_message_event_t &>(*event).window == m_wakeWindow) {
            return;
        }
    }
}

void X11KeyGrabs::press(const xcb_key_press_event_t &event)
{
    const bool isRepeat = !m_heldKeys.insert(event.detail).second;
    if (!isRepeat) {
        listenForReleases(Listening::on);
        if (tapInFront(event) == Tapped::windowOfQt) {
            std::this_thread::sleep_for(timeForTheTap);
        }
    }
    // Also because toolkits hold that their window has lost the keyboard while it is grabbed, and do not tell what is
    // selected in it.
    xcb_ungrab_keyboard(m_connection, event.time);
    xcb_flush(m_connection);
    if (isRepeat) {
        return;
    }
    QMetaObject::invokeMethod(
        &m_receiver, [this, keyCode = event.detail, state = event.state] { m_handler(keyCode, state); },
        Qt::QueuedConnection);
    if (!isDown(event.detail)) { // it came up before its release was listened for
        release(event.detail);
    }
}

void X11KeyGrabs::release(xcb_keycode_t keyCode)
{
    if (m_heldKeys.erase(keyCode) != 0 && m_heldKeys.empty()) {
        listenForReleases(Listening::off);
    }
}

bool X11KeyGrabs::isDown(xcb_keycode_t keyCode) const
{
    const X11Reply<xcb_query_keymap_reply_t> keys(
        xcb_query_keymap_reply(m_connection, xcb_query_keymap(m_connection), nullptr));
    return keys && ((keys->keys[keyCode / 8] >> (keyCode % 8)) & 1U) != 0;
}

void X11KeyGrabs::listenForReleases(Listening listening) const
{
    struct {
        xcb_input_event_mask_t head;
        quint32 mask;
    } selection{{XCB_INPUT_DEVICE_ALL_MASTER, 1},
                listening == Listening::on ? quint32{XCB_INPUT_XI_EVENT_MASK_RAW_KEY_RELEASE} : 0};
    xcb_input_xi_select_events(m_connection, m_root, 1, &selection.head);
    xcb_flush(m_connection);
}

X11KeyGrabs::Tapped X11KeyGrabs::tapInFront(const xcb_key_press_event_t &event)
{
    const quint32 lone = m_loneModifier;
    const auto modifier = static_cast<quint16>(lone & maskOfModifier);
    // Control that is held is not alone with it either; and after its tap it would pass for let go.
    if (modifier == 0 || (event.state & modifier) == 0 || (event.state & XCB_MOD_MASK_CONTROL) != 0) {
        return Tapped::nothing;
    }
    const X11Reply<xcb_get_input_focus_reply_t> focus(
        xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr));
    if (!focus || focus->focus <= XCB_INPUT_FOCUS_FOLLOW_KEYBOARD) {
        return Tapped::nothing;
    }
    // Sent, not typed: it changes nothing in the server, where a layout may well have put a meaning on it.
    xcb_key_press_event_t tap = event;
    tap.detail = static_cast<xcb_keycode_t>(lone >> keyShift);
    tap.event = focus->focus;
    tap.child = XCB_WINDOW_NONE;
    for (const auto &[type, mask] :
         {std::pair{XCB_KEY_PRESS, XCB_EVENT_MASK_KEY_PRESS}, std::pair{XCB_KEY_RELEASE, XCB_EVENT_MASK_KEY_RELEASE}}) {
        tap.response_type = static_cast<quint8>(type);
        xcb_send_event(m_connection, 0, focus->focus, mask, reinterpret_cast<const char *>(&tap));
        tap.state = static_cast<quint16>(tap.state | XCB_MOD_MASK_CONTROL);
    }
    xcb_flush(m_connection);
    return isOfQt(focus->focus) ? Tapped::windowOfQt : Tapped::otherWindow;
}

bool X11KeyGrabs::isOfQt(xcb_window_t window) const
{
    // Qt alone gives every window of its own this property; elsewhere only windows made to be embedded have it.
    const X11Reply<xcb_get_property_reply_t> property(xcb_get_property_reply(
        m_connection, xcb_get_property(m_connection, 0, window, m_embeddingInfo, m_embeddingInfo, 0, 0), nullptr));
    return property && property->type == m_embeddingInfo && m_embeddingInfo != XCB_ATOM_NONE;
}

} // namespace orvesa
