#pragma once

// A call that may block, made in a thread of its own.
//
// Main thread. The thread touches nothing of whoever asks, so that it may outlive it: a call that never returns costs
// its thread, and nobody waits for it, not even the end of the program.

#include "Platform/macos/BackgroundWait.h"

#include <QCoroTask>

#include <QFutureWatcher>
#include <QPromise>

#include <functional>
#include <memory>
#include <optional>
#include <thread>
#include <utility>

namespace orvesa {

/// Suspends until `call` has returned, for the length of the bound at most, and not beyond a stop request: whoever
/// requests the stop finds the task ended. Nothing when the call has not returned by then; none is made once a stop was
/// requested.
template <typename Result>
QCoro::Task<std::optional<Result>> callInBackground(std::function<Result()> call, std::chrono::milliseconds bound,
                                                    std::stop_token stop)
{
    if (stop.stop_requested()) {
        co_return std::nullopt;
    }
    const auto promise = std::make_shared<QPromise<Result>>();
    QFutureWatcher<Result> watcher;
    BackgroundWait wait(watcher, bound, stop);
    watcher.setFuture(promise->future());
    promise->start();
    std::thread([promise, call = std::move(call)] {
        promise->addResult(call());
        promise->finish();
    }).detach();
    co_await wait.end();
    // Taken, so that no copy of it stays behind.
    co_return watcher.isFinished() ? std::optional(watcher.future().takeResult()) : std::nullopt;
}

} // namespace orvesa
