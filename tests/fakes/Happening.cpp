#include "fakes/Happening.h"

#include <QCoreApplication>
#include <QTimer>

#include <chrono>

namespace orvesa {

bool happens(const std::function<bool()> &condition)
{
    QTimer patience; // its end is an event, too
    patience.setSingleShot(true);
    patience.start(std::chrono::seconds(10));
    while (!condition() && patience.isActive()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return condition();
}

} // namespace orvesa
