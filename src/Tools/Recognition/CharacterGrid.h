#pragma once

// The columns that characters of one width stand in: code and terminals. They say where blanks are, and how far a line
// is indented. A value; any thread.

#include "Tools/Recognition/LineText.h"

#include <optional>
#include <vector>

namespace orvesa {

class CharacterGrid final {
public:
    struct Line {
        std::vector<SpacedGlyph> glyphs; ///< with their places in the capture
    };

    /// None where the characters' widths differ, or where there are too few of them to tell. `text` is the height of a
    /// full-size character.
    [[nodiscard]] static std::optional<CharacterGrid> of(const std::vector<Line> &lines, double text);

    /// One glyph for each column, and words begin after empty columns and nowhere else.
    void settle(Line &line) const;
    /// How many columns are empty before the line.
    [[nodiscard]] int indentation(const Line &line) const;

    [[nodiscard]] double pitch() const { return m_pitch; }

private:
    CharacterGrid(double pitch, double left) : m_pitch(pitch), m_left(left) {}
    void dropDoubles(Line &line) const;

    double m_pitch; ///< of a narrow character
    double m_left;  ///< where the first column begins
};

} // namespace orvesa
