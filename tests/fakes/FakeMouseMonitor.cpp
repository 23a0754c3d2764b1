#include "fakes/FakeMouseMonitor.h"

#include <utility>

namespace orvesa {

void FakeMouseMonitor::setMouseDownHandler(Handler handler)
{
    m_handler = std::move(handler);
}

void FakeMouseMonitor::pressAt(QPoint position)
{
    // A copy, because the handler may end the monitoring.
    if (const Handler handler = m_handler) {
        handler(position);
    }
}

} // namespace orvesa
