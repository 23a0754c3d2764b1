#pragma once

// The text of a line that was read: where blanks belong, and which forms punctuation beside Chinese and Japanese
// characters has, judged by the room that the image shows between the characters. Pure functions; any thread.

#include "Tools/Recognition/GrayImage.h"
#include "Tools/Recognition/Reading.h"

#include <QString>

#include <vector>

namespace orvesa {

/// A glyph and the room around it in units of a full-size character.
struct SpacedGlyph {
    QString text;
    bool beginsWord = false; ///< as the engine sees it
    double gapBefore = 0;    ///< empty, between its predecessor and itself
    double advance = 0;      ///< between the middles of both
    double width = 0;
    double confidence = 100;
    double center = 0; ///< across, in the image that it was read in
};

/// `image` is what was read, black on white; `text` the height of a full-size character in it.
[[nodiscard]] std::vector<SpacedGlyph> spaced(const ReadLine &line, const GrayImage &image, double text);

[[nodiscard]] QString lineText(std::vector<SpacedGlyph> glyphs);

} // namespace orvesa
