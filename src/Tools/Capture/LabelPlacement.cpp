#include "Tools/Capture/LabelPlacement.h"

#include <algorithm>

namespace orvesa {

QRect labelPlacement(const QRect &rectangle, QSize label, const std::vector<QRect> &monitors, int gap)
{
    QRect monitor;
    for (const QRect &candidate : monitors) {
        const QRect shared = candidate.intersected(rectangle);
        const QRect best = monitor.intersected(rectangle);
        if (monitor.isEmpty() || shared.width() * shared.height() > best.width() * best.height()) {
            monitor = candidate;
        }
    }
    const QRect seen = rectangle.intersected(monitor);
    const int x = std::clamp(seen.right() + 1 - label.width(), monitor.left() + gap,
                             std::max(monitor.left() + gap, monitor.right() + 1 - gap - label.width()));
    int y = seen.bottom() + 1 + gap;
    if (y + label.height() + gap > monitor.bottom() + 1) {
        y = seen.top() - gap - label.height();
    }
    if (y < monitor.top() + gap) {
        y = seen.bottom() + 1 - gap - label.height();
    }
    return {QPoint(x, y), label};
}

} // namespace orvesa
