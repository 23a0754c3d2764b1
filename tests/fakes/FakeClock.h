#pragma once

// A clock that stands still until a test moves it. Main thread. Whoever still sleeps when the clock is destroyed is woken.

#include "Platform/ClockPort.h"

#include <coroutine>
#include <functional>
#include <map>
#include <optional>
#include <vector>

namespace orvesa {

class FakeClock final : public ClockPort {
public:
    FakeClock() = default;
    ~FakeClock() override;
    Q_DISABLE_COPY_MOVE(FakeClock)

    [[nodiscard]] QCoro::Task<void> sleep(std::chrono::milliseconds duration, std::stop_token stop = {}) override;

    /// Moves the time and resumes, in the order of their ends, all sleeps that end by then, also those begun meanwhile.
    void advance(std::chrono::milliseconds duration);

    [[nodiscard]] std::chrono::milliseconds now() const override { return m_now; }
    [[nodiscard]] std::size_t pendingSleeps() const { return m_sleepers.size(); }
    /// The lengths of all sleeps that were asked for, in order.
    [[nodiscard]] const std::vector<std::chrono::milliseconds> &requestedSleeps() const { return m_requestedSleeps; }

private:
    /// One sleep; lives in the frame of the sleeping coroutine.
    struct Sleeper {
        std::coroutine_handle<> sleeping;
        std::optional<std::stop_callback<std::function<void()>>> stopCallback;
    };

    /// Suspends the coroutine until its time has come or it is told to stop. Awaited by value, hence without the state.
    class Rest final {
    public:
        Rest(FakeClock &clock, Sleeper &sleeper, std::chrono::milliseconds end, std::stop_token stop);

        [[nodiscard]] bool await_ready() const;
        void await_suspend(std::coroutine_handle<> sleeping);
        void await_resume() { m_sleeper.stopCallback.reset(); }

    private:
        FakeClock &m_clock;
        Sleeper &m_sleeper;
        std::chrono::milliseconds m_end;
        std::stop_token m_stop;
    };

    void wake(Sleeper &sleeper);

    std::chrono::milliseconds m_now{0};
    std::multimap<std::chrono::milliseconds, Sleeper *> m_sleepers;
    std::vector<std::chrono::milliseconds> m_requestedSleeps;
};

} // namespace orvesa
