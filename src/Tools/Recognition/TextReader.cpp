#include "Tools/Recognition/TextReader.h"

#include "Tools/Recognition/LanguageVote.h"
#include "Tools/Recognition/LineText.h"
#include "Tools/Recognition/Segment.h"
#include "Tools/Recognition/SegmentImage.h"
#include "Tools/Recognition/Surfaces.h"
#include "Tools/Recognition/TextCleanup.h"

#include <algorithm>

namespace orvesa {

namespace {

constexpr auto block = Engine::Layout::block;

std::vector<Segment> segmentsIn(const GrayImage &ink, const TextBlock &textBlock)
{
    const double enlargement = enlargementFor(textBlock.text);
    std::vector<Segment> segments;
    for (std::size_t row = 0; row < textBlock.rows.size(); ++row) {
        for (const QRect &box : segmentsOf(textBlock.rows[row], textBlock.text)) {
            Segment segment;
            segment.row = row;
            segment.box = box;
            segment.text = textBlock.text * enlargement;
            segment.image = segmentImage(ink, box, textBlock.text, enlargement);
            segments.push_back(std::move(segment));
        }
    }
    return segments;
}

/// What all the segments together are written in decides where a single one is in doubt.
void choose(std::vector<Segment> &segments)
{
    LanguageVote vote;
    std::size_t glyphs = 0;
    std::size_t englishGlyphs = 0;
    for (const Segment &segment : segments) {
        vote.add(segment.japanese, segment.chinese);
        glyphs += std::max({glyphCount(segment.chosen), glyphCount(segment.japanese), glyphCount(segment.chinese)});
        englishGlyphs += glyphCount(segment.chosen);
    }
    // Where nearly all is English, the rest has to be Japanese or Chinese beyond doubt.
    const bool mostlyEnglish = 5 * englishGlyphs >= 3 * glyphs;
    for (Segment &segment : segments) {
        if (glyphCount(segment.chosen) == 0) {
            segment.chosen = vote.choice(segment.japanese, segment.chinese);
            // Where there is no wide character, English is what the engine is for.
            const double head = !hasWide(segment.chosen) ? 20 : mostlyEnglish && isStrayKana(segment.chosen) ? 40 : 0;
            if (head > 0 && glyphCount(segment.english) > 0 &&
                wordConfidenceOf(segment.english) + head > wordConfidenceOf(segment.chosen)) {
                segment.chosen = segment.english;
            }
        }
    }
}

} // namespace

TextReader::TextReader(EnginePool &pool) : m_pool(pool) {}

QStringList TextReader::read(const QImage &image)
{
    Writing writing = writingOn(image);
    const Marks marks = takeMarks(writing);
    QStringList lines;
    for (const TextBlock &textBlock : blocksOf(marks)) {
        lines += textBlock.direction == TextBlock::Direction::down ? readDown(writing.ink, textBlock)
                                                                   : readAcross(writing.ink, textBlock);
    }
    return lines;
}

QStringList TextReader::readAcross(const GrayImage &ink, const TextBlock &textBlock)
{
    std::vector<Segment> segments = segmentsIn(ink, textBlock);
    const auto readWide = [&](Segment &segment) {
        segment.isReadWide = true;
        m_pool.read(Language::japanese, segment.image, block, segment.japanese);
        const double enlargement = chineseEnlargementFor(textBlock.text);
        segment.chineseText = textBlock.text * enlargement;
        segment.chineseImage = segmentImage(ink, segment.box, textBlock.text, enlargement);
        m_pool.read(Language::traditionalChinese, segment.chineseImage, block, segment.chinese);
    };
    const auto readEnglish = [&](Segment &segment) {
        m_pool.read(Language::english, segment.image, block, segment.english);
    };
    if (segments.empty()) {
        return {};
    }
    // The longest piece tells what to expect of the others.
    Segment &probe =
        *std::ranges::max_element(segments, {}, [](const Segment &segment) { return segment.box.width(); });
    readWide(probe);
    readEnglish(probe);
    m_pool.wait();
    const bool english = isEnglish(probe);
    for (Segment &segment : segments) {
        if (&segment == &probe) {
            continue;
        }
        if (english) {
            readEnglish(segment);
        } else {
            readWide(segment);
        }
    }
    m_pool.wait();
    for (Segment &segment : segments) {
        if (isEnglish(segment)) {
            segment.chosen = segment.english;
        } else if (!segment.isReadWide) {
            readWide(segment);
        } else if (glyphCount(segment.english) == 0 && (!hasWide(segment.japanese) || !hasWide(segment.chinese))) {
            readEnglish(segment);
        }
    }
    m_pool.wait();
    choose(segments);
    for (Segment &segment : segments) {
        const bool fromChinese = segment.chosen == segment.chinese;
        segment.runs = hasWide(segment.chosen)
                           ? narrowRunsIn(segment.chosen, fromChinese ? segment.chineseImage : segment.image,
                                          fromChinese ? segment.chineseText : segment.text)
                           : std::vector<NarrowRun>();
        for (NarrowRun &run : segment.runs) {
            m_pool.read(Language::english, run.image, Engine::Layout::line, run.english);
        }
    }
    m_pool.wait();

    QStringList lines;
    std::size_t row = 0;
    QStringList parts;
    for (Segment &segment : segments) {
        const bool fromChinese = segment.chosen == segment.chinese;
        const GrayImage &image = fromChinese ? segment.chineseImage : segment.image;
        mergeRuns(segment.chosen, segment.runs);
        if (segment.row != row && !parts.isEmpty()) {
            lines.append(parts.join(u' '));
            parts.clear();
        }
        row = segment.row;
        for (const ReadLine &line : segment.chosen.lines) {
            parts.append(cleaned(lineText(spaced(line, image, fromChinese ? segment.chineseText : segment.text))));
        }
    }
    if (!parts.isEmpty()) {
        lines.append(parts.join(u' '));
    }
    return lines;
}

QStringList TextReader::readDown(const GrayImage &ink, const TextBlock &textBlock)
{
    constexpr double japaneseEnlargement = 2;
    constexpr double chineseEnlargement = 3;
    const GrayImage japaneseImage = segmentImage(ink, textBlock.box, textBlock.text, japaneseEnlargement);
    const GrayImage chineseImage = segmentImage(ink, textBlock.box, textBlock.text, chineseEnlargement);
    Reading japanese;
    Reading chinese;
    m_pool.read(Language::japaneseDown, japaneseImage, Engine::Layout::column, japanese);
    m_pool.read(Language::traditionalChineseDown, chineseImage, Engine::Layout::column, chinese);
    m_pool.wait();
    LanguageVote vote;
    vote.add(japanese, chinese);
    QStringList lines;
    for (const ReadLine &line : vote.choice(japanese, chinese).lines) {
        QString text;
        for (const Glyph &glyph : line.glyphs) {
            text += glyph.text;
        }
        // Whatever stands in a column of wide characters is wide itself.
        text.replace(u',', u'，').replace(u'!', u'！').replace(u'?', u'？');
        lines.append(cleaned(text));
    }
    return lines;
}

} // namespace orvesa
