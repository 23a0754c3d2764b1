#pragma once

// Time, so that tests of a three second message or a sixty second time-out need not wait. Main thread.

#include <QCoroTask>

#include <chrono>
#include <stop_token>

namespace orvesa {

class ClockPort {
public:
    virtual ~ClockPort() = default;

    /// The time since some fixed moment; it never goes back.
    [[nodiscard]] virtual std::chrono::milliseconds now() const = 0;
    /// Suspends for the duration. A stop request ends the wait early, without an error.
    [[nodiscard]] virtual QCoro::Task<void> sleep(std::chrono::milliseconds duration, std::stop_token stop = {}) = 0;
};

} // namespace orvesa
