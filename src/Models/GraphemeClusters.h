#pragma once

// Counting of extended grapheme clusters (Unicode UAX #29), the characters that a reader perceives. Pure function, any
// thread.

#include <QStringView>

namespace orvesa {

[[nodiscard]] qsizetype graphemeClusterCount(QStringView text);

} // namespace orvesa
