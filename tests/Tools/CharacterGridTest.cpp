// Columns of characters of one width.

#include "Tools/Recognition/CharacterGrid.h"

#include <gtest/gtest.h>

#include <random>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

constexpr double pitch = 8;
constexpr double text = 10;

/// Each character in its column; blanks leave theirs empty.
CharacterGrid::Line line(const QString &characters)
{
    CharacterGrid::Line result;
    for (qsizetype column = 0; column < characters.size(); ++column) {
        if (characters[column] != u' ') {
            SpacedGlyph glyph{.text = QString(characters[column])};
            glyph.center = 40 + pitch * (static_cast<double>(column) + 0.5);
            result.glyphs.push_back(glyph);
        }
    }
    return result;
}

const std::vector<CharacterGrid::Line> code{line(u"if (ready) {"_s), line(u"    start();"_s), line(u"}"_s)};

} // namespace

TEST(CharacterGrid, SaysHowFarLinesAreIndented)
{
    const auto grid = CharacterGrid::of(code, text);
    ASSERT_TRUE(grid);
    EXPECT_NEAR(grid->pitch(), pitch, 0.1);
    EXPECT_EQ(grid->indentation(code[0]), 0);
    EXPECT_EQ(grid->indentation(code[1]), 4);
    EXPECT_EQ(grid->indentation(code[2]), 0);
}

TEST(CharacterGrid, FindsBlanksThatTheEngineMissedAndDropsThoseItInvented)
{
    const auto grid = CharacterGrid::of(code, text);
    ASSERT_TRUE(grid);
    CharacterGrid::Line found = line(u"int i = f(x)"_s);
    found.glyphs[7].beginsWord = true; // the x
    grid->settle(found);
    EXPECT_EQ(lineText(found.glyphs), u"int i = f(x)"_s);
}

TEST(CharacterGrid, TakesTwoGlyphsInOneColumnForOne)
{
    const auto grid = CharacterGrid::of(code, text);
    ASSERT_TRUE(grid);
    CharacterGrid::Line found = line(u"..x, y"_s);
    SpacedGlyph twin = found.glyphs[2];
    found.glyphs[2].center -= 2;
    twin.center += 2;
    twin.text = u"X"_s;
    twin.confidence = 60;
    found.glyphs.insert(found.glyphs.begin() + 3, twin);
    grid->settle(found);
    EXPECT_EQ(lineText(found.glyphs), u"..x, y"_s);
}

TEST(CharacterGrid, IsNoneWhereWidthsDiffer)
{
    std::mt19937 random(3);
    std::uniform_real_distribution<double> width(3, 12);
    CharacterGrid::Line prose = line(u"sixteencharacters"_s);
    double place = 0;
    for (SpacedGlyph &glyph : prose.glyphs) {
        place += width(random);
        glyph.center = place;
    }
    EXPECT_FALSE(CharacterGrid::of({prose, prose}, text));
    EXPECT_FALSE(CharacterGrid::of({line(u"too few"_s)}, text));
}

TEST(CharacterGrid, LeavesLinesWithWideCharactersAlone)
{
    const auto grid = CharacterGrid::of(code, text);
    ASSERT_TRUE(grid);
    CharacterGrid::Line comment = line(u"# 説明"_s);
    comment.glyphs[1].beginsWord = false;
    grid->settle(comment);
    EXPECT_FALSE(comment.glyphs[1].beginsWord);
}

} // namespace orvesa
