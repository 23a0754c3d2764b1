#include "fakes/FakeClock.h"

#include <utility>

namespace orvesa {

FakeClock::Rest::Rest(FakeClock &clock, Sleeper &sleeper, std::chrono::milliseconds end, std::stop_token stop)
    : m_clock(clock), m_sleeper(sleeper), m_end(end), m_stop(std::move(stop))
{
}

FakeClock::~FakeClock()
{
    while (!m_sleepers.empty()) {
        wake(*m_sleepers.begin()->second);
    }
}

bool FakeClock::Rest::await_ready() const
{
    return m_end <= m_clock.m_now || m_stop.stop_requested();
}

void FakeClock::Rest::await_suspend(std::coroutine_handle<> sleeping)
{
    m_sleeper.sleeping = sleeping;
    m_clock.m_sleepers.emplace(m_end, &m_sleeper);
    m_sleeper.stopCallback.emplace(m_stop, [&clock = m_clock, &sleeper = m_sleeper] { clock.wake(sleeper); });
}

void FakeClock::wake(Sleeper &sleeper)
{
    std::erase_if(m_sleepers, [&](const auto &entry) { return entry.second == &sleeper; });
    sleeper.sleeping.resume();
}

QCoro::Task<void> FakeClock::sleep(std::chrono::milliseconds duration, std::stop_token stop)
{
    m_requestedSleeps.push_back(duration);
    Sleeper sleeper;
    co_await Rest(*this, sleeper, m_now + duration, std::move(stop));
}

void FakeClock::advance(std::chrono::milliseconds duration)
{
    const std::chrono::milliseconds target = m_now + duration;
    while (!m_sleepers.empty() && m_sleepers.begin()->first <= target) {
        m_now = m_sleepers.begin()->first;
        wake(*m_sleepers.begin()->second);
    }
    m_now = target;
}

} // namespace orvesa
