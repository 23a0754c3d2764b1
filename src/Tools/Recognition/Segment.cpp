#include "Tools/Recognition/Segment.h"

#include "Tools/Recognition/GlyphPlaces.h"
#include "Tools/Recognition/Scripts.h"
#include "Tools/Recognition/SegmentImage.h"

#include <algorithm>
#include <cmath>
#include <ranges>
#include <utility>

namespace orvesa {

namespace {

template <typename Test>
bool anyGlyph(const Reading &reading, Test test)
{
    return std::ranges::any_of(reading.lines,
                               [&](const ReadLine &line) { return std::ranges::any_of(line.glyphs, test); });
}

/// Halfway into the room on both sides of the glyphs.
QRect partOf(const std::vector<Span> &places, std::size_t first, std::size_t last, const GrayImage &image)
{
    const int left = first == 0 ? 0 : (places[first - 1].end + places[first].begin + 1) / 2;
    const int right = last + 1 == places.size() ? image.width() - 1 : (places[last].end + places[last + 1].begin) / 2;
    return {QPoint(left, 0), QPoint(std::max(left, right), image.height() - 1)};
}

/// A part that has its border above and below already.
GrayImage bordered(const GrayImage &image, const QRect &part)
{
    GrayImage result(part.width() + 2 * readingBorder, part.height(), 255);
    for (int y = 0; y < part.height(); ++y) {
        const std::uint8_t *source = image.row(part.top() + y) + part.left();
        std::copy(source, source + part.width(), result.row(y) + readingBorder);
    }
    return result;
}

} // namespace

const GrayImage &chosenImage(const Segment &segment)
{
    switch (segment.source) {
    case Segment::Source::japaneseImage:
        return segment.japaneseImage;
    case Segment::Source::chineseImage:
        return segment.chineseImage;
    case Segment::Source::image:
        break;
    }
    return segment.image;
}

double chosenText(const Segment &segment)
{
    switch (segment.source) {
    case Segment::Source::japaneseImage:
        return segment.japaneseText;
    case Segment::Source::chineseImage:
        return segment.chineseText;
    case Segment::Source::image:
        break;
    }
    return segment.text;
}

std::vector<NarrowRun> narrowRunsIn(const Reading &reading, const GrayImage &image, double text)
{
    std::vector<NarrowRun> runs;
    for (std::size_t number = 0; number < reading.lines.size(); ++number) {
        const ReadLine &line = reading.lines[number];
        const std::vector<Span> places = glyphPlaces(line, image, text);
        const auto isNarrow = [&](std::size_t index) { return Scripts::isNarrow(line.glyphs[index].text); };
        const auto isLetter = [](const Glyph &glyph) { return !glyph.text.isEmpty() && glyph.text[0].isLetter(); };
        for (std::size_t first = 0; first < line.glyphs.size(); ++first) {
            if (!isNarrow(first)) {
                continue;
            }
            std::size_t last = first;
            while (last + 1 < line.glyphs.size() && isNarrow(last + 1)) {
                ++last;
            }
            const auto begin = line.glyphs.begin() + static_cast<std::ptrdiff_t>(first);
            const auto end = line.glyphs.begin() + static_cast<std::ptrdiff_t>(last) + 1;
            if (std::any_of(begin, end, isLetter)) {
                NarrowRun run{number, first, last, partOf(places, first, last, image), {}, {}};
                run.image = bordered(image, run.part);
                runs.push_back(std::move(run));
            }
            first = last;
        }
    }
    return runs;
}

void mergeRuns(Reading &reading, const std::vector<NarrowRun> &runs)
{
    // From the last, so that earlier places stay right.
    for (const NarrowRun &run : std::views::reverse(runs)) {
        if (run.english.lines.size() != 1 || hasWide(run.english)) {
            continue;
        }
        auto &glyphs = reading.lines[run.line].glyphs;
        const auto begin = glyphs.begin() + static_cast<std::ptrdiff_t>(run.first);
        const auto end = glyphs.begin() + static_cast<std::ptrdiff_t>(run.last) + 1;
        Reading before;
        before.lines.push_back({{begin, end}});
        const auto count = static_cast<double>(run.last - run.first + 1);
        const auto englishCount = static_cast<double>(glyphCount(run.english));
        constexpr double slack = 1;
        if (confidenceOf(run.english) + slack < confidenceOf(before) ||
            std::abs(englishCount - count) > 1 + 0.3 * count) {
            continue;
        }
        std::vector<Glyph> replacement = run.english.lines.front().glyphs;
        for (Glyph &glyph : replacement) {
            glyph.box.translate(run.part.left() - readingBorder, 0);
        }
        replacement.front().beginsWord = begin->beginsWord;
        const auto place = glyphs.erase(begin, end);
        glyphs.insert(place, replacement.begin(), replacement.end());
    }
}

bool isSure(const Reading &reading)
{
    constexpr double leastMean = 85;
    constexpr double leastOfAnyWord = 65;
    if (glyphCount(reading) > 0 && wordConfidenceOf(reading) >= leastMean &&
        !anyGlyph(reading, [](const Glyph &glyph) { return glyph.wordConfidence < leastOfAnyWord; })) {
        return true;
    }
    // Addresses and code are no words, and yet read surely, letter by letter.
    constexpr std::size_t leastLetters = 6;
    constexpr double leastMeanOfLetters = 98.4;
    constexpr double leastLetter = 95;
    return glyphCount(reading) >= leastLetters && confidenceOf(reading) >= leastMeanOfLetters &&
           weakestOf(reading) >= leastLetter;
}

bool isEnglish(const Segment &segment)
{
    constexpr double surelyWide = 75; // an engine that only knows wide characters sees them everywhere, unsurely
    const auto isWideReading = [](const Reading &reading) {
        return hasWide(reading) && wordConfidenceOf(reading) >= surelyWide;
    };
    return isSure(segment.english) && !(isWideReading(segment.japanese) && isWideReading(segment.chinese));
}

bool hasWide(const Reading &reading)
{
    return anyGlyph(reading, [](const Glyph &glyph) { return Scripts::isWide(glyph.text); });
}

bool isStrayKana(const Reading &reading)
{
    int kana = 0;
    int wide = 0;
    for (const ReadLine &line : reading.lines) {
        for (const Glyph &glyph : line.glyphs) {
            wide += Scripts::isWide(glyph.text) ? 1 : 0;
            kana += !glyph.text.isEmpty() && Scripts::isKana(glyph.text[0]) ? 1 : 0;
        }
    }
    constexpr int most = 2;
    return wide == kana && kana <= most;
}

std::size_t glyphCount(const Reading &reading)
{
    std::size_t count = 0;
    for (const ReadLine &line : reading.lines) {
        count += line.glyphs.size();
    }
    return count;
}

} // namespace orvesa
