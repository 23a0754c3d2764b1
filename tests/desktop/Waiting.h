#pragma once

// Waiting for something to happen on the private desktop.
//
// Main thread. A wait processes the events of the calling thread (X events, D-Bus signals, child processes, sockets,
// timers) and looks at its condition again after each of them; nothing is polled by time. Every wait has a deadline.

#include <QString>

#include <chrono>
#include <functional>
#include <stdexcept>

namespace orvesa::desktop {

/// How long a wait lasts at most unless the caller says otherwise. Long, since only a failing wait ever uses it up.
inline constexpr std::chrono::milliseconds usualDeadline{10'000};

/// Anything that went wrong on the desktop; what() says what was being done.
class DesktopError : public std::runtime_error {
public:
    explicit DesktopError(const QString &message) : std::runtime_error(message.toStdString()) {}
};

/// Something awaited did not happen in time.
class DeadlineError final : public DesktopError {
public:
    using DesktopError::DesktopError;
};

/// Returns once `condition` holds, true; false when `deadline` has passed before. The condition is looked at once at
/// the start, after each batch of events, and once at the end.
[[nodiscard]] bool happensWithin(std::chrono::milliseconds deadline, const std::function<bool()> &condition);

/// The same, throwing DeadlineError("waited N ms in vain for " + what).
void waitUntil(const std::function<bool()> &condition, const QString &what,
               std::chrono::milliseconds deadline = usualDeadline);

/// Processes events for the whole of `duration`: for showing that something does not happen.
void processEventsFor(std::chrono::milliseconds duration);

} // namespace orvesa::desktop
