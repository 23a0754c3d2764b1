#pragma once

// Where the label with the rectangle's size goes. A pure function.

#include <QRect>
#include <QSize>

#include <vector>

namespace orvesa {

/// Below the rectangle's right end if there is room on its monitor, else above, else inside. `gap` is kept between
/// them.
[[nodiscard]] QRect labelPlacement(const QRect &rectangle, QSize label, const std::vector<QRect> &monitors, int gap);

} // namespace orvesa
