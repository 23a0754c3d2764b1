#pragma once

// Marks sorted into rows of text, and rows into segments. Pure functions; any thread.

#include "Tools/Recognition/Marks.h"

#include <QRect>

#include <vector>

namespace orvesa {

struct TextRow {
    QRect box;
    Marks marks;
};

/// The rows from top to bottom. `text` is the height of a full-size character.
[[nodiscard]] std::vector<TextRow> rowsOf(const Marks &marks, int text);

/// The parts of a row that stand apart by more than words do, from left to right.
[[nodiscard]] std::vector<QRect> segmentsOf(const TextRow &row, int text);

} // namespace orvesa
