#pragma once

// A call that may block, made in a thread of its own.
//
// Main thread. The thread touches nothing of whoever asks, so that it may outlive it: a call that never returns costs
// its thread, and nobody waits for it, not even the end of the program.

#include <QCoroSignal>
#include <QCoroTask>

#include <QFutureWatcher>
#include <QPromise>

#include <chrono>
#include <functional>
#include <memory>
#include <thread>
#include <utility>

namespace orvesa {

/// Suspends until `call` has returned, for the length of the bound at most; then the result is `otherwise`.
template <typename Result>
QCoro::Task<Result> callInBackground(std::function<Result()> call, std::chrono::milliseconds bound, Result otherwise)
{
    const auto promise = std::make_shared<QPromise<Result>>();
    QFutureWatcher<Result> watcher;
    watcher.setFuture(promise->future());
    promise->start();
    std::thread([promise, call = std::move(call)] {
        promise->addResult(call());
        promise->finish();
    }).detach();
    // The end is announced through the event loop, so that it cannot come before somebody listens.
    co_await qCoro(&watcher, &QFutureWatcherBase::finished, bound);
    co_return watcher.isFinished() ? watcher.result() : std::move(otherwise);
}

} // namespace orvesa
