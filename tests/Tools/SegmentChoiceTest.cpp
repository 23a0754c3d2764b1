// Whose reading of a segment is taken, and what is read again.

#include "Tools/Recognition/SegmentChoice.h"
#include "Tools/GlyphText.h"

#include <gtest/gtest.h>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

Reading reading(const QString &text, double confidence, double weakest)
{
    ReadLine line;
    for (const QChar character : text) {
        line.glyphs.push_back({QString(character), QRect(), confidence, confidence, false});
    }
    line.glyphs.back().confidence = weakest;
    return {{line}};
}

Segment segment(const Reading &english, const Reading &japanese, const Reading &chinese)
{
    Segment result;
    result.isReadWide = true;
    result.english = english;
    result.japanese = japanese;
    result.chinese = chinese;
    return result;
}

QString chosen(std::vector<Segment> segments)
{
    choose(segments);
    return textOf(segments.front().chosen.lines.front());
}

} // namespace

TEST(SegmentChoice, TakesCodeForEnglishWhateverTheOthersSee)
{
    EXPECT_EQ(chosen({segment(reading(u"total+=1;"_s, 99, 95), reading(u"to上a+テ1;"_s, 95, 90),
                              reading(u"七ot上避1;"_s, 95, 60))}),
              u"total+=1;"_s);
}

TEST(SegmentChoice, TakesAMixedLineForWhatItIs)
{
    // The letters' confidence hides how unsure the English engine is of the rest.
    const Reading japanese = reading(u"PDF(Ctrl+Shift+S)保存"_s, 98.5, 98.5);
    EXPECT_EQ(chosen({segment(reading(u"PDF(Ctrl+Shift+S)RF"_s, 98.5, 90), japanese, reading(u"PDF保禾"_s, 95, 80))}),
              u"PDF(Ctrl+Shift+S)保存"_s);
}

TEST(SegmentChoice, BelievesTwoEnginesThatSeeTheSameIdeographs)
{
    EXPECT_EQ(chosen({segment(reading(u"July"_s, 98.5, 98.5), reading(u"九時"_s, 98, 98), reading(u"九時"_s, 97, 97))}),
              u"九時"_s);
}

TEST(SegmentChoice, TakesAStrayKanaForALetter)
{
    EXPECT_EQ(
        chosen({segment(reading(u"Ctrl+S"_s, 97.5, 92), reading(u"Ctr+は"_s, 98, 95), reading(u"CtritS"_s, 93, 90))}),
        u"Ctrl+S"_s);
}

TEST(SegmentChoice, ReadsAgainWhatIsWeak)
{
    const Reading english = reading(u"xx"_s, 80, 80);
    std::vector<Segment> segments{segment(english, reading(u"清晨"_s, 80, 80), reading(u"清晨"_s, 98, 97)),
                                  segment(english, reading(u"河面"_s, 80, 80), reading(u"河面"_s, 98, 79))};
    std::vector<SecondReading> again = secondReadings(segments);
    ASSERT_EQ(again.size(), 1U);
    EXPECT_EQ(again[0].segment, 1U);
    EXPECT_EQ(again[0].language, WideLanguage::traditionalChinese);

    // English for certain, or not read by the others: nothing to repeat.
    segments[1].chosen = english;
    EXPECT_TRUE(secondReadings(segments).empty());
    segments[1].chosen = {};
    segments[1].isReadWide = false;
    EXPECT_TRUE(secondReadings(segments).empty());
}

TEST(SegmentChoice, ReadsAgainInTheLanguageOfTheWholeAsWell)
{
    const Reading english = reading(u"xx"_s, 80, 80);
    const std::vector<Segment> segments{
        segment(english, reading(u"顔示陸蔵"_s, 78, 78), reading(u"顯示隱藏的檔案"_s, 99, 98)),
        segment(english, reading(u"人"_s, 91, 91), reading(u"茲體"_s, 73, 60))};
    const std::vector<SecondReading> again = secondReadings(segments);
    ASSERT_EQ(again.size(), 2U);
    EXPECT_NE(again[0].language, again[1].language);
}

} // namespace orvesa
