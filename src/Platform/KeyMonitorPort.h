#pragma once

// Key presses taken before any window sees them, for a control that listens for a shortcut.
//
// Main thread; handlers are called on it, from the event loop. While a monitor is installed it takes every press that
// the desktop lets it have, registered shortcuts and the window manager's own among them, and nobody else gets one.
// Modifier keys alone are no presses, and neither are the repeats of a held key. A key that is down when the monitor is
// removed stays taken until it is let go.

#include <QString>
#include <QtGlobal>

#include <functional>

namespace orvesa {

struct MonitoredKeyPress {
    quint32 keyCode = 0;       ///< macOS virtual key code; `unknownKeyCode` for a key that has none
    quint32 modifierFlags = 0; ///< KeyboardFlags (Platform/ModifierBits.h)
    QString characters;        ///< as typed without any modifier but Shift, in the current layout; may be empty

    static constexpr quint32 unknownKeyCode = 0xffff;
};

class KeyMonitorPort {
public:
    using Handler = std::function<void(const MonitoredKeyPress &press)>;
    /// An installed monitor; 0 is none.
    using Token = quint64;

    virtual ~KeyMonitorPort() = default;

    /// Takes key presses from now on. A second monitor takes them from the first.
    [[nodiscard]] virtual Token addMonitor(Handler handler) = 0;
    /// May be called by the handler. Tokens that are not installed are ignored.
    virtual void removeMonitor(Token token) = 0;
};

} // namespace orvesa
