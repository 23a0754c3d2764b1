#pragma once

// One segment of a row on its way through the engines. Values and pure functions; any thread.

#include "Tools/Recognition/GrayImage.h"
#include "Tools/Recognition/Reading.h"

#include <QRect>
#include <QString>

#include <cstddef>
#include <vector>

namespace orvesa {

struct NarrowRun {
    std::size_t line = 0;
    std::size_t first = 0; ///< glyphs, both inside
    std::size_t last = 0;
    QRect part; ///< of the segment's image
    GrayImage image;
    Reading english;
};

struct Segment {
    std::size_t row = 0;
    QRect box;       ///< in the capture
    double text = 0; ///< height of a full-size character in `image`
    GrayImage image;
    double japaneseText = 0; ///< the same for the image that the Japanese engine read again
    GrayImage japaneseImage; ///< empty unless it did
    double chineseText = 0;  ///< the same for the image that the Chinese engine reads
    GrayImage chineseImage;
    bool isReadWide = false; ///< or about to be: by the Japanese and the Chinese engine
    Reading english;
    Reading japanese;
    Reading chinese;
    Reading chosen;
    enum class Source { image, japaneseImage, chineseImage };
    Source source = Source::image; ///< where `chosen` was read
    std::vector<NarrowRun> runs;
};

[[nodiscard]] const GrayImage &chosenImage(const Segment &segment);
/// Height of a full-size character in it.
[[nodiscard]] double chosenText(const Segment &segment);

/// Stretches of Latin letters among wide characters, with the parts of the image that show them.
[[nodiscard]] std::vector<NarrowRun> narrowRunsIn(const Reading &reading, const GrayImage &image, double text);

/// Puts what the English engine read in the runs in their places where it is surer of it.
void mergeRuns(Reading &reading, const std::vector<NarrowRun> &runs);

/// Whether an English reading can stand by itself.
[[nodiscard]] bool isSure(const Reading &reading);

/// Whether the segment is English without any doubt: the other engines, if asked, see nothing wide there either.
[[nodiscard]] bool isEnglish(const Segment &segment);

[[nodiscard]] bool hasWide(const Reading &reading);
/// One or two kana among nothing wide: what a bracket or an asterisk looks like to an engine for Japanese.
[[nodiscard]] bool isStrayKana(const Reading &reading);
[[nodiscard]] std::size_t glyphCount(const Reading &reading);

} // namespace orvesa
