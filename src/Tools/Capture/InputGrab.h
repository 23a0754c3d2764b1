#pragma once

// The pointer and the keyboard for one window alone, while the user chooses. Main thread.
//
// A menu that is open, or a shortcut whose keys are still down, holds them for a moment; the server tells nobody when
// it lets go, so both are asked for again until a deadline.

#include <xcb/xcb.h>

#include <chrono>

namespace orvesa {

class InputGrab final {
public:
    enum class State { waiting, held, refused };

    InputGrab(xcb_connection_t *connection, xcb_window_t window, std::chrono::milliseconds patience);
    ~InputGrab();
    InputGrab(const InputGrab &) = delete;
    InputGrab &operator=(const InputGrab &) = delete;

    /// Asks for what is not held yet.
    State tryAgain();
    [[nodiscard]] State state() const;
    void setCursor(xcb_cursor_t cursor);

    /// How long to wait before the next try.
    static constexpr std::chrono::milliseconds interval{10};

private:
    xcb_connection_t *m_connection;
    xcb_window_t m_window;
    std::chrono::steady_clock::time_point m_deadline;
    xcb_cursor_t m_cursor = 0;
    bool m_pointer = false;
    bool m_keyboard = false;
};

} // namespace orvesa
