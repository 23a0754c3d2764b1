#pragma once

// The connected marks of a piece of writing that may be parts of characters. Values and pure functions; any thread.

#include "Tools/Recognition/Surfaces.h"

#include <QRect>

#include <vector>

namespace orvesa {

using Marks = std::vector<QRect>;

/// Rules, frames and grids are taken out of the writing; the boxes of what is left are returned.
[[nodiscard]] Marks takeMarks(Writing &writing);

[[nodiscard]] QRect boundsOf(const Marks &marks);

/// The height that full-size characters have: four fifths of the marks are not taller. 0 without marks.
[[nodiscard]] int typicalHeight(const Marks &marks);

} // namespace orvesa
