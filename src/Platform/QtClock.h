#pragma once

// Time from the event loop's timers, the same on every desktop. Main thread.

#include "Platform/ClockPort.h"

namespace orvesa {

class QtClock final : public ClockPort {
public:
    [[nodiscard]] std::chrono::milliseconds now() const override;
    [[nodiscard]] QCoro::Task<void> sleep(std::chrono::milliseconds duration, std::stop_token stop = {}) override;
};

} // namespace orvesa
