#include "Platform/QtClock.h"

#include <QCoroTimer>

#include <QTimer>

namespace orvesa {

std::chrono::milliseconds QtClock::now() const
{
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch());
}

QCoro::Task<void> QtClock::sleep(std::chrono::milliseconds duration, std::stop_token stop)
{
    if (stop.stop_requested()) {
        co_return;
    }
    QTimer timer;
    timer.setSingleShot(true);
    timer.setTimerType(Qt::PreciseTimer);
    timer.setInterval(duration);
    timer.start();
    // The wait ends from the event loop, never inside the call that asks for the stop.
    const std::stop_callback endEarly(stop, [&timer] { timer.start(std::chrono::milliseconds(0)); });
    co_await timer;
}

} // namespace orvesa
