#pragma once

// Text that runs down, laid out again as rows. The engines read rows far better than columns: each character's square
// is cut out and set beside the one before, and what stands otherwise in columns than in rows is put right.
// Pure functions; any thread.

#include "Tools/Recognition/GrayImage.h"
#include "Tools/Recognition/Layout.h"

#include <optional>

namespace orvesa {

struct LaidAcross {
    GrayImage ink;
    TextBlock block;
};

/// None where no even step separates the characters of the columns.
[[nodiscard]] std::optional<LaidAcross> laidAcross(const GrayImage &ink, const TextBlock &down);

} // namespace orvesa
