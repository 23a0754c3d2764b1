#pragma once

// How marks are laid out, in the order in which a person reads: columns, then rows, then segments of rows; and text
// that runs from top to bottom. Pure functions; any thread.

#include "Tools/Recognition/Rows.h"

#include <QRect>

#include <vector>

namespace orvesa {

struct TextBlock {
    enum class Direction { across, down };

    Direction direction = Direction::across;
    QRect box;
    int text = 0;              ///< height of a full-size character
    std::vector<TextRow> rows; ///< where the text runs down, its columns from the right
};

[[nodiscard]] std::vector<TextBlock> blocksOf(const Marks &marks);

} // namespace orvesa
