#pragma once

// A cancellable asynchronous job on the main thread.
//
// The body is a coroutine that starts at once and suspends while it waits. Cancellation is a request: the body sees it
// through its stop token (an HTTP transfer in flight is aborted) and nobody waits for its end. The handle may go before
// the job: the job then runs on. An exception that leaves the body is logged, never lost.

#include <QCoroTask>

#include <functional>
#include <stop_token>

namespace orvesa {

class Job final {
public:
    /// Must take what it needs by value: the job may outlive whoever started it. Kept alive until the job has ended.
    using Body = std::function<QCoro::Task<void>(std::stop_token)>;

    [[nodiscard]] static Job start(Body body);

    void requestStop() { m_source.request_stop(); }

private:
    Job() = default;

    std::stop_source m_source;
};

} // namespace orvesa
