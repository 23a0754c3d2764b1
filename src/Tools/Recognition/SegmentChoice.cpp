#include "Tools/Recognition/SegmentChoice.h"

#include "Tools/Recognition/LanguageVote.h"
#include "Tools/Recognition/Scripts.h"

#include <algorithm>
#include <iterator>

namespace orvesa {

namespace {

LanguageVote voteOf(const std::vector<Segment> &segments)
{
    LanguageVote vote;
    for (const Segment &segment : segments) {
        vote.add(segment.japanese, segment.chinese);
    }
    return vote;
}

double wideShare(const Reading &reading)
{
    std::size_t wide = 0;
    for (const ReadLine &line : reading.lines) {
        wide += static_cast<std::size_t>(
            std::ranges::count_if(line.glyphs, [](const Glyph &glyph) { return Scripts::isWide(glyph.text); }));
    }
    const std::size_t all = glyphCount(reading);
    return all == 0 ? 0 : static_cast<double>(wide) / static_cast<double>(all);
}

double weakestWide(const Reading &reading)
{
    double weakest = 100;
    for (const ReadLine &line : reading.lines) {
        for (const Glyph &glyph : line.glyphs) {
            weakest = Scripts::isWide(glyph.text) ? std::min(weakest, glyph.confidence) : weakest;
        }
    }
    return weakest;
}

std::vector<QString> ideographsIn(const Reading &reading)
{
    std::vector<QString> ideographs;
    for (const ReadLine &line : reading.lines) {
        for (const Glyph &glyph : line.glyphs) {
            if (Scripts::isIdeograph(glyph.text)) {
                ideographs.push_back(glyph.text);
            }
        }
    }
    std::ranges::sort(ideographs);
    return ideographs;
}

/// Whether two engines that do not know of each other see the same ideographs: then they are there.
bool agreeOnIdeographs(const Reading &japanese, const Reading &chinese)
{
    constexpr std::size_t least = 2;
    std::vector<QString> common;
    std::ranges::set_intersection(ideographsIn(japanese), ideographsIn(chinese), std::back_inserter(common));
    return common.size() >= least;
}

/// Whether the engine for English is right where another engine sees wide characters, or none that it could not see
/// itself. Each sees its own everywhere, but the wrong one unsurely: in a mixed line the letters' confidence says
/// nothing on the other characters, so the weakest ones are compared.
bool isRatherEnglish(const Reading &english, const Reading &wide, bool mostlyEnglish)
{
    if (glyphCount(english) == 0) {
        return false;
    }
    const double share = wideShare(wide);
    const double mean = confidenceOf(english);
    const double weakest = weakestOf(english);
    if (share <= 0) {
        constexpr double head = 4;
        return mean >= confidenceOf(wide) - head;
    }
    constexpr double fewWide = 0.5;
    if (isStrayKana(wide) || share <= fewWide) {
        constexpr double least = 94;
        const double head = isStrayKana(wide) ? 4 : 2;
        return mean >= std::max(least, confidenceOf(wide) - (mostlyEnglish ? 2 * head : head)) &&
               weakest >= weakestWide(wide) - (mostlyEnglish ? 2 * head : head);
    }
    constexpr double least = 97.5;
    return mean >= std::max(least, confidenceOf(wide)) && weakest >= weakestWide(wide);
}

} // namespace

std::vector<SecondReading> secondReadings(const std::vector<Segment> &segments)
{
    constexpr double weakGlyph = 92;
    const LanguageVote vote = voteOf(segments);
    std::vector<SecondReading> readings;
    for (std::size_t index = 0; index < segments.size(); ++index) {
        const Segment &segment = segments[index];
        if (glyphCount(segment.chosen) > 0 || !segment.isReadWide) {
            continue;
        }
        const Reading &likely = vote.choice(segment.japanese, segment.chinese);
        if (glyphCount(likely) > 0 && weakestOf(likely) >= weakGlyph) {
            continue;
        }
        const bool isJapanese = &likely == &segment.japanese;
        readings.push_back({index, isJapanese ? WideLanguage::japanese : WideLanguage::traditionalChinese});
        if (isJapanese != vote.leansToJapanese()) {
            readings.push_back({index, isJapanese ? WideLanguage::traditionalChinese : WideLanguage::japanese});
        }
    }
    return readings;
}

void choose(std::vector<Segment> &segments)
{
    const LanguageVote vote = voteOf(segments);
    std::size_t glyphs = 0;
    std::size_t englishGlyphs = 0;
    for (const Segment &segment : segments) {
        glyphs += std::max({glyphCount(segment.chosen), glyphCount(segment.japanese), glyphCount(segment.chinese)});
        englishGlyphs += glyphCount(segment.chosen);
    }
    // Where nearly all is English, the rest has to be Japanese or Chinese beyond doubt.
    const bool mostlyEnglish = 5 * englishGlyphs >= 3 * glyphs;
    for (Segment &segment : segments) {
        if (glyphCount(segment.chosen) == 0) {
            const Reading &wide = vote.choice(segment.japanese, segment.chinese);
            segment.chosen = wide;
            segment.source = &wide == &segment.chinese           ? Segment::Source::chineseImage
                             : segment.japaneseImage.width() > 0 ? Segment::Source::japaneseImage
                                                                 : Segment::Source::image;
            if (!agreeOnIdeographs(segment.japanese, segment.chinese) &&
                isRatherEnglish(segment.english, wide, mostlyEnglish)) {
                segment.chosen = segment.english;
                segment.source = Segment::Source::image;
            }
        }
    }
}

} // namespace orvesa
