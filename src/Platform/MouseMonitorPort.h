#pragma once

// Global mouse-down events, whichever program they go to. Main thread.

#include <QPoint>

#include <functional>

namespace orvesa {

class MouseMonitorPort {
public:
    /// `position` in the desktop's native pixels, origin at the top left of the virtual desktop. Left, right and other
    /// buttons count; wheel turns do not.
    using Handler = std::function<void(QPoint position)>;

    virtual ~MouseMonitorPort() = default;

    /// Starts (or, with an empty handler, ends) the monitoring. While there is no handler nothing wakes the program.
    virtual void setMouseDownHandler(Handler handler) = 0;

    /// Whether no press can go unseen. Some desktops show a program no presses but those on windows of its own kind.
    [[nodiscard]] virtual bool seesEveryPress() const { return true; }
};

} // namespace orvesa
