#pragma once

// Where the result panel goes. Pure functions.
//
// All rectangles are in device-independent pixels with the origin at the top left of the primary screen, y downwards;
// screens left of or above it have negative coordinates.

#include <QPoint>
#include <QRect>
#include <QSize>

#include <optional>
#include <vector>

namespace orvesa::PanelPlacement {

inline constexpr int pointerOffset = 12; ///< panel's top left corner, right of and below the pointer
inline constexpr int screenMargin = 8;

struct Screen {
    QRect frame;
    QRect visibleFrame; ///< without task bars, docks and menu bars
};

struct Screens {
    std::vector<Screen> all;
    std::optional<std::size_t> main; ///< index of the primary screen
};

/// Top left corner of a panel of this size that opens at the pointer: on the screen that contains the pointer, else on
/// the main one, kept inside its visible frame. Without any screen the place is not corrected.
[[nodiscard]] QPoint nearPointer(QPoint pointer, QSize panel, const Screens &screens);

/// The screen that holds most of a panel that is shown, or the main one when none holds any of it.
[[nodiscard]] std::optional<Screen> ownScreen(const QRect &panel, const Screens &screens);

/// Whether the sizes differ by more than half a point either way. Less is rounding, and following it would never end.
[[nodiscard]] bool needsNewFrame(QSizeF current, QSizeF ideal);

/// The frame of a panel that changes to `size`: its top edge stays, unless it has to move to stay inside `screen`.
[[nodiscard]] QRect refitted(const QRect &current, QSize size, const std::optional<Screen> &screen);

} // namespace orvesa::PanelPlacement
