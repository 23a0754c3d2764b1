#include "desktop/Waiting.h"

#include "desktop/EventSource.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTimer>

#include <algorithm>
#include <vector>

namespace orvesa::desktop {

using namespace Qt::StringLiterals;

namespace {

std::vector<EventSource *> &eventSources()
{
    static std::vector<EventSource *> sources;
    return sources;
}

/// Takes events that a source has read already. Such events no longer wake the event loop.
bool takeQueuedEvents()
{
    bool any = false;
    for (EventSource *source : eventSources())
        any = source->takeQueuedEvents() || any;
    return any;
}

} // namespace

EventSource::EventSource()
{
    eventSources().push_back(this);
}

EventSource::~EventSource()
{
    std::erase(eventSources(), this);
}

bool happensWithin(std::chrono::milliseconds deadline, const std::function<bool()> &condition)
{
    QEventLoop loop;
    QTimer expiry; // ends the wait for events; its firing is an event like others
    expiry.setSingleShot(true);
    expiry.setTimerType(Qt::PreciseTimer);
    const QDeadlineTimer end(deadline, Qt::PreciseTimer);
    for (;;) {
        if (condition())
            return true;
        if (end.hasExpired())
            return false;
        if (takeQueuedEvents())
            continue;
        expiry.start(std::chrono::milliseconds(end.remainingTime() + 1));
        loop.processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    }
}

void waitUntil(const std::function<bool()> &condition, const QString &what, std::chrono::milliseconds deadline)
{
    if (!happensWithin(deadline, condition))
        throw DeadlineError(u"waited %1 ms in vain for %2"_s.arg(deadline.count()).arg(what));
}

void processEventsFor(std::chrono::milliseconds duration)
{
    const bool happened = happensWithin(duration, [] { return false; });
    Q_ASSERT(!happened);
    Q_UNUSED(happened)
}

} // namespace orvesa::desktop
