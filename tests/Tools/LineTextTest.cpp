// Blanks and wide forms, judged by the room between characters.

#include "Tools/Recognition/LineText.h"

#include <gtest/gtest.h>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

/// "字" after no room; each entry is a character and the room before it.
std::vector<SpacedGlyph> glyphs(const std::vector<std::pair<QString, double>> &entries)
{
    std::vector<SpacedGlyph> result;
    for (const auto &[text, gap] : entries) {
        result.push_back({.text = text, .beginsWord = gap > 0.2, .gapBefore = gap, .advance = 0.5});
    }
    return result;
}

} // namespace

TEST(LineText, LeavesNoBlanksBetweenWideCharacters)
{
    // The engine begins a word at each of them.
    EXPECT_EQ(lineText(glyphs(
                  {{u"設"_s, 0}, {u"定"_s, 0.1}, {u"を"_s, 0.3}, {u"く"_s, 0.45}, {u"。"_s, 0.2}, {u"次"_s, 0.7}})),
              u"設定をく。次"_s);
}

TEST(LineText, KeepsTheBlanksBetweenWideWords)
{
    EXPECT_EQ(lineText(glyphs({{u"編"_s, 0}, {u"集"_s, 0.1}, {u"表"_s, 0.9}, {u"示"_s, 0.1}})), u"編集 表示"_s);
}

TEST(LineText, SeparatesLatinFromWideWhereThereIsRoom)
{
    EXPECT_EQ(lineText(glyphs({{u"P"_s, 0}, {u"C"_s, 0.1}, {u"版"_s, 0.35}, {u"本"_s, 0.1}, {u"A"_s, 0.1}})),
              u"PC 版本A"_s);
}

TEST(LineText, WidensSentenceMarksAfterWideCharacters)
{
    EXPECT_EQ(lineText(glyphs({{u"好"_s, 0}, {u","_s, 0.3}, {u"嗎"_s, 0.4}, {u"?"_s, 0.3}})), u"好，嗎？"_s);
    EXPECT_EQ(lineText(glyphs({{u"a"_s, 0}, {u","_s, 0.05}, {u"b"_s, 0.3}, {u"?"_s, 0.05}})), u"a, b?"_s);
}

TEST(LineText, SeesTheCommaBetweenALatinWordAndAWideCharacter)
{
    EXPECT_EQ(lineText(glyphs({{u"y"_s, 0}, {u"'"_s, 0.35}, {u"再"_s, 0.4}})), u"y，再"_s);
    EXPECT_EQ(lineText(glyphs({{u"s"_s, 0}, {u"'"_s, 0.05}, {u"再"_s, 0.4}})), u"s' 再"_s);
}

TEST(LineText, KeepsANarrowColonAfterAWideCharacter)
{
    EXPECT_EQ(lineText(glyphs({{u"音"_s, 0}, {u":"_s, 0.08}, {u"オ"_s, 0.4}})), u"音: オ"_s);
}

TEST(LineText, TellsParenthesesByTheRoomBesideThem)
{
    EXPECT_EQ(lineText(glyphs({{u"語"_s, 0}, {u"("_s, 0.6}, {u"日"_s, 0.1}, {u")"_s, 0.1}})), u"語（日）"_s);
    EXPECT_EQ(lineText(glyphs({{u"存"_s, 0}, {u"("_s, 0.4}, {u"C"_s, 0.1}, {u")"_s, 0.1}})), u"存 (C)"_s);
}

TEST(LineText, LeavesTheParenthesesOfCodeAlone)
{
    EXPECT_EQ(lineText(glyphs({{u"f"_s, 0}, {u"("_s, 0.1}, {u"x"_s, 0.1}, {u")"_s, 0.1}, {u";"_s, 0.1}})), u"f(x);"_s);
    EXPECT_EQ(lineText(glyphs({{u"数"_s, 0}, {u"("_s, 0.1}, {u"x"_s, 0.1}, {u")"_s, 0.1}})), u"数(x)"_s);
}

TEST(LineText, WidensDigitsThatStandInSquares)
{
    std::vector<SpacedGlyph> line = glyphs({{u"共"_s, 0}, {u"3"_s, 0.4}, {u"2"_s, 0.5}, {u"枚"_s, 0.3}});
    line[2].advance = 1;
    EXPECT_EQ(lineText(line), u"共３２枚"_s);
    line[2].advance = 0.55;
    line[2].gapBefore = 0.1;
    line[1].gapBefore = line[3].gapBefore = 0.1;
    line[2].beginsWord = false;
    EXPECT_EQ(lineText(line), u"共32枚"_s);
}

TEST(LineText, MeasuresInSquaresOfTheLine)
{
    GrayImage image(100, 20, 255);
    ReadLine line;
    for (int index = 0; index < 3; ++index) {
        for (int y = 2; y < 18; ++y) {
            for (int x = 10 + index * 24; x < 30 + index * 24; ++x) {
                image.at(x, y) = 0;
            }
        }
        line.glyphs.push_back({.text = u"田"_s, .box = QRect(10 + index * 24, 2, 20, 16)});
    }
    const std::vector<SpacedGlyph> result = spaced(line, image, 14);
    ASSERT_EQ(result.size(), 3U);
    EXPECT_NEAR(result[1].advance, 1.05, 0.02);
    EXPECT_NEAR(result[1].gapBefore, 4 / 22.8, 0.02);
}

TEST(LineText, SeesNoBlankBesideAThinDigit)
{
    std::vector<SpacedGlyph> date = glyphs({{u"月"_s, 0}, {u"1"_s, 0.26}, {u"日"_s, 0.26}});
    date[1].width = 0.15;
    EXPECT_EQ(lineText(date), u"月1日"_s);
    date[1].width = 0.45;
    EXPECT_EQ(lineText(date), u"月 1 日"_s);
}

TEST(LineText, WidensParenthesesAroundWhatBeginsWide)
{
    EXPECT_EQ(lineText(glyphs({{u"日"_s, 0}, {u"("_s, 0.3}, {u"月"_s, 0.1}, {u")"_s, 0.1}, {u"か"_s, 0.3}})),
              u"日（月）か"_s);
    EXPECT_EQ(lineText(glyphs({{u"誤"_s, 0}, {u"("_s, 0.3}, {u"碼"_s, 0.1}, {u"4"_s, 0.1}, {u")"_s, 0.1}})),
              u"誤（碼4）"_s);
    EXPECT_EQ(lineText(glyphs({{u"存"_s, 0}, {u"("_s, 0.3}, {u"S"_s, 0.1}, {u")"_s, 0.1}})), u"存 (S)"_s);
    EXPECT_EQ(lineText(glyphs({{u"f"_s, 0}, {u"("_s, 0.05}, {u"x"_s, 0.1}, {u")"_s, 0.1}, {u";"_s, 0.3}})),
              u"f(x) ;"_s);
}

TEST(LineText, WidensAllDigitsOfANumberOrNone)
{
    std::vector<SpacedGlyph> number =
        glyphs({{u"共"_s, 0}, {u"1"_s, 0.1}, {u"2"_s, 0.1}, {u"8"_s, 0.1}, {u"張"_s, 0.1}});
    number[1].advance = number[2].advance = 0.95;
    EXPECT_TRUE(lineText(number).contains(u"12"_s));
    number[3].advance = 0.95;
    EXPECT_TRUE(lineText(number).contains(u"１２８"_s));
}

TEST(LineText, SeesTheCommaAtTheEndOfAWideLine)
{
    EXPECT_EQ(lineText(glyphs({{u"用"_s, 0}, {u"C"_s, 0.3}, {u"*"_s, 0.35}})), u"用 C，"_s);
    EXPECT_EQ(lineText(glyphs({{u"B"_s, 0}, {u"C"_s, 0.1}, {u"*"_s, 0.35}})), u"BC *"_s);
    std::vector<SpacedGlyph> compared = glyphs({{u"a"_s, 0}, {u">"_s, 0.35}, {u"用"_s, 0.4}});
    compared[1].width = 0.6;
    EXPECT_EQ(lineText(compared), u"a > 用"_s);
}

} // namespace orvesa
