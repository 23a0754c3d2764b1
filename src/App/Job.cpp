#include "App/Job.h"

#include "Core/LocalizedError.h"

#include <QLoggingCategory>

namespace orvesa {

namespace {

// The body is this coroutine's own parameter, so that what it captured lives as long as the job.
QCoro::Task<void> drive(Job::Body body, std::stop_token stop)
{
    try {
        co_await body(std::move(stop));
    } catch (const std::exception &error) {
        qWarning("OrvesaTranslate: a job failed: %s", qUtf8Printable(localizedDescription(error)));
    } catch (...) {
        qWarning("OrvesaTranslate: a job failed for an unknown reason");
    }
}

} // namespace

Job Job::start(Body body)
{
    Job job;
    // The coroutine owns itself; dropping the task detaches it.
    [[maybe_unused]] const auto task = drive(std::move(body), job.m_source.get_token());
    return job;
}

} // namespace orvesa
