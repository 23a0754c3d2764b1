#include "Tools/Recognition/TextReader.h"

#include "Tools/Recognition/CharacterGrid.h"
#include "Tools/Recognition/LanguageVote.h"
#include "Tools/Recognition/LineText.h"
#include "Tools/Recognition/Segment.h"
#include "Tools/Recognition/SegmentChoice.h"
#include "Tools/Recognition/SegmentImage.h"
#include "Tools/Recognition/Surfaces.h"
#include "Tools/Recognition/TextCleanup.h"
#include "Tools/Recognition/VerticalText.h"

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

/// The glyphs' centers become places in the capture.
CharacterGrid::Line placedLine(const ReadLine &line, const Segment &segment, int text)
{
    CharacterGrid::Line placed{spaced(line, chosenImage(segment), chosenText(segment))};
    const double enlargement = chosenText(segment) / text;
    for (SpacedGlyph &glyph : placed.glyphs) {
        glyph.center = segment.box.left() + (glyph.center - segmentInset(enlargement)) / enlargement;
    }
    return placed;
}

QStringList linesOf(const std::vector<Segment> &segments, int text)
{
    std::vector<CharacterGrid::Line> parts;
    std::vector<std::size_t> rows;
    for (const Segment &segment : segments) {
        for (const ReadLine &line : segment.chosen.lines) {
            parts.push_back(placedLine(line, segment, text));
            rows.push_back(segment.row);
        }
    }
    const std::optional<CharacterGrid> grid = CharacterGrid::of(parts, text);
    QStringList lines;
    for (std::size_t index = 0; index < parts.size(); ++index) {
        if (grid) {
            grid->settle(parts[index]);
        }
        const QString part = cleaned(lineText(parts[index].glyphs));
        if (index > 0 && rows[index] == rows[index - 1]) {
            lines.last() += u' ' + part;
        } else {
            lines.append(grid ? QString(grid->indentation(parts[index]), u' ') + part : part);
        }
    }
    return lines;
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
    readAgain(ink, textBlock.text, segments);
    choose(segments);
    for (Segment &segment : segments) {
        if (hasWide(segment.chosen)) {
            segment.runs = narrowRunsIn(segment.chosen, chosenImage(segment), chosenText(segment));
        }
        for (NarrowRun &run : segment.runs) {
            m_pool.read(Language::english, run.image, Engine::Layout::line, run.english);
        }
    }
    m_pool.wait();

    for (Segment &segment : segments) {
        mergeRuns(segment.chosen, segment.runs);
    }
    return linesOf(segments, textBlock.text);
}

void TextReader::readAgain(const GrayImage &ink, int text, std::vector<Segment> &segments)
{
    struct Attempt {
        SecondReading asked;
        double text = 0;
        GrayImage image;
        Reading reading;
    };
    std::vector<Attempt> attempts;
    for (const SecondReading &asked : secondReadings(segments)) {
        const double enlargement =
            asked.language == WideLanguage::japanese ? chineseEnlargementFor(text) : largerEnlargementFor(text);
        attempts.push_back(
            {asked, text * enlargement, segmentImage(ink, segments[asked.segment].box, text, enlargement), {}});
    }
    for (Attempt &attempt : attempts) {
        m_pool.read(attempt.asked.language == WideLanguage::japanese ? Language::japanese
                                                                     : Language::traditionalChinese,
                    attempt.image, block, attempt.reading);
    }
    m_pool.wait();
    for (Attempt &attempt : attempts) {
        Segment &segment = segments[attempt.asked.segment];
        const bool isJapanese = attempt.asked.language == WideLanguage::japanese;
        Reading &reading = isJapanese ? segment.japanese : segment.chinese;
        constexpr double leastGlyphs = 0.8; // a surer reading of less is no better
        if (confidenceOf(attempt.reading) <= confidenceOf(reading) ||
            static_cast<double>(glyphCount(attempt.reading)) < leastGlyphs * static_cast<double>(glyphCount(reading))) {
            continue;
        }
        reading = std::move(attempt.reading);
        (isJapanese ? segment.japaneseImage : segment.chineseImage) = std::move(attempt.image);
        (isJapanese ? segment.japaneseText : segment.chineseText) = attempt.text;
    }
}

QStringList TextReader::readDown(const GrayImage &ink, const TextBlock &textBlock)
{
    if (const std::optional<LaidAcross> laid = laidAcross(ink, textBlock)) {
        QStringList lines = readAcross(laid->ink, laid->block);
        for (QString &line : lines) {
            line = cleanedDown(line);
        }
        return lines;
    }
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
        lines.append(cleanedDown(cleaned(text)));
    }
    return lines;
}

} // namespace orvesa
