// Which engine's reading stands, and how Latin words come into wide lines.

#include "Tools/Recognition/LanguageVote.h"
#include "Tools/Recognition/Segment.h"
#include "Tools/Recognition/SegmentImage.h"
#include "Tools/GlyphText.h"

#include <gtest/gtest.h>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

Reading reading(const QString &text, double confidence)
{
    ReadLine line;
    int x = 0;
    for (const QChar character : text) {
        line.glyphs.push_back({.text = QString(character),
                               .box = QRect(x, 0, 18, 20),
                               .confidence = confidence,
                               .wordConfidence = confidence});
        x += 20;
    }
    return {{line}};
}

GrayImage blocks(int count)
{
    GrayImage image(count * 20, 20, 255);
    for (int index = 0; index < count; ++index) {
        for (int y = 0; y < 20; ++y) {
            for (int x = index * 20; x < index * 20 + 18; ++x) {
                image.at(x, y) = 0;
            }
        }
    }
    return image;
}

} // namespace

TEST(Segment, IsEnglishWhenNoWordIsInDoubt)
{
    Segment segment;
    segment.english = reading(u"File"_s, 95);
    EXPECT_TRUE(isEnglish(segment));
    segment.english.lines[0].glyphs[1].wordConfidence = 40;
    EXPECT_FALSE(isEnglish(segment));
    segment.english = {};
    EXPECT_FALSE(isEnglish(segment));
}

TEST(Segment, IsNotEnglishWhereBothOthersSeeWideCharacters)
{
    Segment segment;
    segment.english = reading(u"#8"_s, 95);
    segment.japanese = reading(u"装置"_s, 90);
    segment.chinese = reading(u"裝置"_s, 90);
    EXPECT_FALSE(isEnglish(segment));
    segment.chinese = reading(u"裝置"_s, 30);
    EXPECT_TRUE(isEnglish(segment));
}

TEST(Segment, FindsLatinRunsWithTheirParts)
{
    const auto runs = narrowRunsIn(reading(u"版Wi本3月"_s, 90), blocks(6), 18);
    ASSERT_EQ(runs.size(), 1U); // a number alone is read well enough
    EXPECT_EQ(runs[0].first, 1U);
    EXPECT_EQ(runs[0].last, 2U);
    EXPECT_EQ(runs[0].part.left(), 19);
    EXPECT_EQ(runs[0].part.right(), 58);
}

TEST(Segment, TakesEnglishRunsThatAreSurer)
{
    Reading line = reading(u"版Wl本"_s, 70);
    auto runs = narrowRunsIn(line, blocks(4), 18);
    runs[0].english = reading(u"Wi"_s, 95);
    mergeRuns(line, runs);
    EXPECT_EQ(textOf(line.lines[0]), u"版Wi本"_s);

    line = reading(u"版Wi本"_s, 95);
    runs[0].english = reading(u"Wl"_s, 70);
    mergeRuns(line, runs);
    EXPECT_EQ(textOf(line.lines[0]), u"版Wi本"_s);

    runs[0].english = reading(u"Something else"_s, 99);
    mergeRuns(line, runs);
    EXPECT_EQ(textOf(line.lines[0]), u"版Wi本"_s);
}

TEST(LanguageVote, LetsTheWholeDecideForPiecesInDoubt)
{
    LanguageVote vote;
    vote.add(reading(u"請先儲存檔案"_s, 60), reading(u"請先儲存檔案"_s, 95));
    const Reading japanese = reading(u"取消"_s, 92);
    const Reading chinese = reading(u"取消"_s, 90);
    EXPECT_EQ(&vote.choice(japanese, chinese), &chinese);
    const Reading clear = reading(u"です"_s, 98);
    const Reading unclear = reading(u"方寸"_s, 60);
    EXPECT_EQ(&vote.choice(clear, unclear), &clear);
}

TEST(SegmentImage, IsBlackOnWhiteWithABorder)
{
    GrayImage ink(40, 20);
    for (int y = 6; y < 14; ++y) {
        for (int x = 10; x < 30; ++x) {
            ink.at(x, y) = 60; // faint
        }
    }
    const GrayImage image = segmentImage(ink, QRect(10, 6, 20, 8), 8, 2);
    EXPECT_EQ(image.width(), 2 * 22 + 20);
    EXPECT_EQ(image.height(), 2 * 10 + 20);
    EXPECT_EQ(image.at(0, 0), 255);
    EXPECT_LT(image.at(image.width() / 2, image.height() / 2), 5);
}

TEST(SegmentImage, DoesNotEnlargeWhatIsLargeAlready)
{
    EXPECT_GT(enlargementFor(12), 2);
    EXPECT_DOUBLE_EQ(enlargementFor(60), 1);
    EXPECT_LE(enlargementFor(1), 3);
    EXPECT_LT(chineseEnlargementFor(14), enlargementFor(14));
}

} // namespace orvesa
