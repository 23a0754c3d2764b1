#pragma once

// What an engine read in one segment: glyphs with their places in the image it was given. Values; any thread.

#include <QRect>
#include <QString>

#include <vector>

namespace orvesa {

struct Glyph {
    QString text;              ///< one character as a person counts it
    QRect box;                 ///< in the image that was read
    double confidence = 0;     ///< 0 to 100
    double wordConfidence = 0; ///< of the word that it is part of
    bool beginsWord = false;

    bool operator==(const Glyph &) const = default;
};

struct ReadLine {
    std::vector<Glyph> glyphs;

    bool operator==(const ReadLine &) const = default;
};

struct Reading {
    std::vector<ReadLine> lines;

    bool operator==(const Reading &) const = default;
};

[[nodiscard]] double confidenceOf(const Reading &reading);
[[nodiscard]] double wordConfidenceOf(const Reading &reading);
/// The least of all glyphs' confidences; 0 without any.
[[nodiscard]] double weakestOf(const Reading &reading);

} // namespace orvesa
