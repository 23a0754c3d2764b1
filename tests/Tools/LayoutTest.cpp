// Columns, rows and segments, and text that runs down, made of boxes as letters would be.

#include "Tools/Recognition/Layout.h"
#include "Tools/Recognition/Spans.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace orvesa {

namespace {

constexpr int size = 12;

/// A row of letters, each ten wide and two apart.
void addRow(Marks &marks, int x, int y, int letters)
{
    for (int letter = 0; letter < letters; ++letter) {
        marks.emplace_back(x + letter * size, y, 10, size);
    }
}

std::vector<TextBlock> shuffledBlocks(Marks marks)
{
    // The order in which marks are found must not matter.
    std::ranges::reverse(marks);
    return blocksOf(marks);
}

} // namespace

TEST(Spans, JoinsWhatIsWithinReach)
{
    const Marks marks{{0, 0, 5, 5}, {7, 0, 5, 5}, {20, 0, 5, 5}};
    EXPECT_EQ(coveredSpans(marks, Axis::across).size(), 3U);
    EXPECT_EQ(coveredSpans(marks, Axis::across, 2).size(), 2U);
    EXPECT_EQ(gapsBetween(coveredSpans(marks, Axis::across, 2)), (std::vector<Span>{{12, 19}}));
}

TEST(Layout, FindsRowsFromTopToBottom)
{
    Marks marks;
    addRow(marks, 0, 40, 8);
    addRow(marks, 0, 0, 8);
    addRow(marks, 0, 20, 8);
    const auto blocks = shuffledBlocks(marks);
    ASSERT_EQ(blocks.size(), 1U);
    ASSERT_EQ(blocks[0].rows.size(), 3U);
    EXPECT_EQ(blocks[0].rows[0].box.top(), 0);
    EXPECT_EQ(blocks[0].rows[2].box.top(), 40);
}

TEST(Layout, ReadsColumnsOfProseOneAfterTheOther)
{
    Marks marks;
    for (int row = 0; row < 4; ++row) {
        addRow(marks, 0, row * 20, 14);
        addRow(marks, 220, row * 20, 13);
    }
    const auto blocks = shuffledBlocks(marks);
    ASSERT_EQ(blocks.size(), 2U);
    EXPECT_LT(blocks[0].box.right(), 200);
    EXPECT_EQ(blocks[1].rows.size(), 4U);
}

TEST(Layout, ReadsAHeadingAboveColumnsFirst)
{
    Marks marks;
    addRow(marks, 0, 0, 30);
    for (int row = 2; row < 6; ++row) {
        addRow(marks, 0, row * 20, 14);
        addRow(marks, 220, row * 20, 13);
    }
    const auto blocks = shuffledBlocks(marks);
    ASSERT_EQ(blocks.size(), 3U);
    EXPECT_EQ(blocks[0].rows.size(), 1U);
}

TEST(Layout, KeepsTheRowsOfATable)
{
    Marks marks;
    for (int row = 0; row < 4; ++row) {
        addRow(marks, 0, row * 20, 3 + 3 * (row % 2));
        addRow(marks, 150, row * 20, 4);
        addRow(marks, 300, row * 20, 2 + row);
    }
    const auto blocks = shuffledBlocks(marks);
    ASSERT_EQ(blocks.size(), 1U);
    ASSERT_EQ(blocks[0].rows.size(), 4U);
    EXPECT_EQ(segmentsOf(blocks[0].rows[0], blocks[0].text).size(), 3U);
}

TEST(Layout, TellsListsSideBySideByTheirLines)
{
    Marks marks;
    for (int row = 0; row < 4; ++row) {
        addRow(marks, 0, row * 20, 5 + row);
        addRow(marks, 220, row * 26 + 9, 7 - row);
    }
    EXPECT_EQ(shuffledBlocks(marks).size(), 2U);
}

TEST(Layout, JoinsDotsToTheirRow)
{
    Marks marks;
    addRow(marks, 0, 10, 6);
    marks.emplace_back(30, 5, 2, 2);
    addRow(marks, 0, 40, 6);
    const auto blocks = shuffledBlocks(marks);
    ASSERT_EQ(blocks[0].rows.size(), 2U);
    EXPECT_EQ(blocks[0].rows[0].box.top(), 5);
}

TEST(Layout, JoinsTheHalvesOfCharactersThatStandAlone)
{
    Marks marks;
    marks.emplace_back(0, 0, 12, 6);
    marks.emplace_back(0, 7, 12, 6);
    addRow(marks, 0, 30, 10);
    EXPECT_EQ(shuffledBlocks(marks)[0].rows.size(), 2U);
}

TEST(Layout, SeparatesRowsThatTouch)
{
    Marks marks;
    addRow(marks, 0, 0, 6);
    addRow(marks, 0, 13, 6);
    marks.emplace_back(80, 8, 4, 8); // a tail of the first row that reaches into the second
    EXPECT_EQ(shuffledBlocks(marks)[0].rows.size(), 2U);
}

TEST(Layout, SeesTextThatRunsDown)
{
    Marks marks;
    for (int column = 0; column < 2; ++column) {
        for (int row = 0; row < 9; ++row) {
            marks.emplace_back(column * 30, row * 19, 17, 17);
        }
    }
    const auto blocks = shuffledBlocks(marks);
    ASSERT_EQ(blocks.size(), 1U);
    EXPECT_EQ(blocks[0].direction, TextBlock::Direction::down);
}

TEST(Layout, DoesNotTakeNumberedLinesForTextThatRunsDown)
{
    Marks marks;
    for (int row = 0; row < 9; ++row) {
        marks.emplace_back(0, row * 22, 9, 12);
    }
    EXPECT_EQ(shuffledBlocks(marks)[0].direction, TextBlock::Direction::across);
}

TEST(Layout, OfNothingIsNothing)
{
    EXPECT_TRUE(blocksOf({}).empty());
}

} // namespace orvesa
