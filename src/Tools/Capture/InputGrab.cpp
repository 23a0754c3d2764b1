#include "Tools/Capture/InputGrab.h"

#include "Tools/Capture/Reply.h"

namespace orvesa {

namespace {

constexpr std::uint16_t pointerEvents =
    XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE | XCB_EVENT_MASK_POINTER_MOTION;

} // namespace

InputGrab::InputGrab(xcb_connection_t *connection, xcb_window_t window, std::chrono::milliseconds patience)
    : m_connection(connection), m_window(window), m_deadline(std::chrono::steady_clock::now() + patience)
{
}

InputGrab::~InputGrab()
{
    if (m_keyboard) {
        xcb_ungrab_keyboard(m_connection, XCB_CURRENT_TIME);
    }
    if (m_pointer) {
        xcb_ungrab_pointer(m_connection, XCB_CURRENT_TIME);
    }
    xcb_flush(m_connection);
}

InputGrab::State InputGrab::tryAgain()
{
    if (!m_pointer) {
        const Reply<xcb_grab_pointer_reply_t> reply(
            xcb_grab_pointer_reply(m_connection,
                                   xcb_grab_pointer(m_connection, 0, m_window, pointerEvents, XCB_GRAB_MODE_ASYNC,
                                                    XCB_GRAB_MODE_ASYNC, XCB_NONE, m_cursor, XCB_CURRENT_TIME),
                                   nullptr));
        m_pointer = reply != nullptr && reply->status == XCB_GRAB_STATUS_SUCCESS;
    }
    if (!m_keyboard) {
        const Reply<xcb_grab_keyboard_reply_t> reply(xcb_grab_keyboard_reply(
            m_connection,
            xcb_grab_keyboard(m_connection, 0, m_window, XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC),
            nullptr));
        m_keyboard = reply != nullptr && reply->status == XCB_GRAB_STATUS_SUCCESS;
    }
    return state();
}

InputGrab::State InputGrab::state() const
{
    if (m_pointer && m_keyboard) {
        return State::held;
    }
    return std::chrono::steady_clock::now() < m_deadline ? State::waiting : State::refused;
}

void InputGrab::setCursor(xcb_cursor_t cursor)
{
    m_cursor = cursor;
    if (m_pointer) {
        xcb_change_active_pointer_grab(m_connection, cursor, XCB_CURRENT_TIME, pointerEvents);
        xcb_flush(m_connection);
    }
}

} // namespace orvesa
