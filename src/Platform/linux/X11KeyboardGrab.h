#pragma once

// The whole keyboard of an X server for a while: every key goes to this program and to nobody else, grabbed
// combinations of this and of other programs included.
//
// Main thread. It uses a connection of its own, so that its keys are not mistaken for presses of shortcuts, opened at
// the first use and silent in between. The keyboard is held on the window that has the input focus, which therefore
// does not lose it. It is given back only when the last key that was pressed meanwhile is up, or after two seconds:
// what is left of a held key, its repeats above all, must not reach anybody.

#include "Platform/KeyMonitorPort.h"
#include "Platform/linux/X11Connection.h"
#include "Platform/linux/X11KeyFaces.h"
#include "Platform/linux/X11Modifiers.h"

#include <QTimer>

#include <optional>
#include <set>

namespace orvesa {

class X11KeyboardGrab final {
public:
    X11KeyboardGrab();
    ~X11KeyboardGrab();
    Q_DISABLE_COPY_MOVE(X11KeyboardGrab)

    /// Hands every press to the handler from now on. False when there is no X server, when it does not answer
    /// in time, or when another program has the keyboard.
    [[nodiscard]] bool begin(KeyMonitorPort::Handler handler);
    /// Hands out no more presses.
    void end();

private:
    bool prepare();
    [[nodiscard]] bool grab();
    void noteKeysThatAreDown();
    void handle(const xcb_generic_event_t &event);
    void press(const xcb_key_press_event_t &event);
    void giveBackWhenIdle();
    [[nodiscard]] std::optional<MonitoredKeyPress> translated(const xcb_key_press_event_t &event) const;

    X11Connection m_connection;
    X11Connection::HandlerToken m_token = 0;
    bool m_isGrabbed = false;
    X11KeyFaces m_faces;
    X11Modifiers m_modifiers;
    std::set<xcb_keycode_t> m_heldKeys; ///< modifiers not included
    KeyMonitorPort::Handler m_handler;
    QTimer m_patience; ///< with keys that do not come up
};

} // namespace orvesa
