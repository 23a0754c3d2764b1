#pragma once

// Small repairs to a line of recognised text that need no image. Pure functions; any thread.

#include <QString>

namespace orvesa {

/// Look-alikes that the neighbours give away, quotes that do not match, and blanks at the ends.
[[nodiscard]] QString cleaned(QString line);

/// What stands in a column of wide characters is wide itself, and nothing separates it.
[[nodiscard]] QString cleanedDown(QString line);

} // namespace orvesa
