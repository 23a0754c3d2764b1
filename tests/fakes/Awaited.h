#pragma once

// Waits for a job from a test and gives its result or throws its exception.
//
// QCoro::waitFor() alone never returns when the job throws. The event loop runs while the job is suspended, so a job
// that nothing ever resumes hangs until the test's time limit.

#include <QCoroTask>

#include <exception>
#include <optional>

namespace orvesa {

namespace detail {

template <typename Result>
QCoro::Task<void> runInto(QCoro::Task<Result> &task, std::optional<Result> &result, std::exception_ptr &failure)
{
    try {
        result.emplace(co_await task);
    } catch (...) {
        failure = std::current_exception();
    }
}

inline QCoro::Task<void> runInto(QCoro::Task<void> &task, std::exception_ptr &failure)
{
    try {
        co_await task;
    } catch (...) {
        failure = std::current_exception();
    }
}

} // namespace detail

template <typename Result>
Result awaited(QCoro::Task<Result> task)
{
    std::exception_ptr failure;
    if constexpr (std::is_void_v<Result>) {
        QCoro::waitFor(detail::runInto(task, failure));
        if (failure) {
            std::rethrow_exception(failure);
        }
    } else {
        std::optional<Result> result;
        QCoro::waitFor(detail::runInto(task, result, failure));
        if (failure) {
            std::rethrow_exception(failure);
        }
        return std::move(*result);
    }
}

} // namespace orvesa
