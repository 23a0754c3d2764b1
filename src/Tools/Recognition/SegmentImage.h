#pragma once

// A segment of writing made ready for the recognition engine: black on white, at full contrast, with a border, at the
// size that the engine reads best. Pure; any thread.

#include "Tools/Recognition/GrayImage.h"

#include <QRect>

namespace orvesa {

/// White around what the engine reads, in pixels of the image that it is given.
inline constexpr int readingBorder = 10;

/// How often the writing is enlarged for characters of that height. Captures of a screen with a high density are large
/// already.
[[nodiscard]] double enlargementFor(int textHeight);
/// The same for the Chinese engine, which reads smaller characters better than enlarged ones.
[[nodiscard]] double chineseEnlargementFor(int textHeight);
/// Where that is unsure: between the two.
[[nodiscard]] double largerEnlargementFor(int textHeight);

/// `part` of the ink, which may reach beyond the image a little; `text` is the height of a full-size character.
[[nodiscard]] GrayImage segmentImage(const GrayImage &ink, const QRect &part, int text, double enlargement);

/// How far the part's left side lies inside its image.
[[nodiscard]] double segmentInset(double enlargement);

} // namespace orvesa
