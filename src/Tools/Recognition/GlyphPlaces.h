#pragma once

// Where each glyph of a line really stands. The engine says which glyphs there are, and only roughly where; the image
// says where ink is, and not what it belongs to. Pure functions; any thread.

#include "Tools/Recognition/GrayImage.h"
#include "Tools/Recognition/Reading.h"
#include "Tools/Recognition/Spans.h"

#include <vector>

namespace orvesa {

/// The stretch across that each glyph takes up, in order: the division of the image's inked stretches among the glyphs
/// that agrees best with their usual widths and with the engine's places. `text` is the height of a full-size
/// character.
[[nodiscard]] std::vector<Span> glyphPlaces(const ReadLine &line, const GrayImage &image, double text);

} // namespace orvesa
