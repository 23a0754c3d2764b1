#pragma once

// Waiting for what another thread does.
//
// Main thread. Lives in the coroutine that waits. The end of the work and of the bound are heard from the event loop, a
// stop request at once: the coroutine goes on within the request, while everything is still there.

#include <QFutureWatcher>
#include <QTimer>

#include <chrono>
#include <coroutine>
#include <functional>
#include <optional>
#include <stop_token>

namespace orvesa {

class BackgroundWait final : public QObject {
public:
    class End final {
    public:
        explicit End(BackgroundWait &wait) : m_wait(wait) {}

        [[nodiscard]] bool await_ready() const noexcept { return false; }
        void await_suspend(std::coroutine_handle<> waiting) { m_wait.m_waiting = waiting; }
        void await_resume() const noexcept {}

    private:
        BackgroundWait &m_wait;
    };

    BackgroundWait(const QFutureWatcherBase &watcher, std::chrono::milliseconds bound, std::stop_token stop);

    /// Awaitable, once, after the work has begun.
    [[nodiscard]] End end() { return End(*this); }

private:
    void resume();

    QTimer m_bound;
    std::coroutine_handle<> m_waiting;
    std::stop_callback<std::function<void()>> m_stopping;
};

} // namespace orvesa
