#include "Platform/macos/BackgroundWait.h"

#include <utility>

namespace orvesa {

BackgroundWait::BackgroundWait(const QFutureWatcherBase &watcher, std::chrono::milliseconds bound, std::stop_token stop)
    : m_stopping(std::move(stop), [this] { resume(); })
{
    // Queued: the coroutine takes the senders with it.
    connect(
        &watcher, &QFutureWatcherBase::finished, this, [this] { resume(); }, Qt::QueuedConnection);
    connect(
        &m_bound, &QTimer::timeout, this, [this] { resume(); }, Qt::QueuedConnection);
    m_bound.setSingleShot(true);
    m_bound.start(bound);
}

void BackgroundWait::resume()
{
    if (const std::coroutine_handle<> waiting = std::exchange(m_waiting, {})) {
        waiting.resume();
    }
}

} // namespace orvesa
