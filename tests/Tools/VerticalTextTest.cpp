// Columns of characters laid out as rows, made of boxes as characters would be.

#include "Tools/Recognition/VerticalText.h"

#include <gtest/gtest.h>

namespace orvesa {

namespace {

constexpr int step = 22;
constexpr int width = 20;

class Columns final {
public:
    Columns() : m_ink(200, 600)
    {
        m_block.direction = TextBlock::Direction::down;
        m_block.text = width;
    }

    void fill(const QRect &area)
    {
        for (int y = area.top(); y <= area.bottom(); ++y) {
            for (int x = area.left(); x <= area.right(); ++x) {
                m_ink.at(x, y) = 200;
            }
        }
    }

    /// Filled squares, one below the other.
    void addColumn(int x, int characters)
    {
        TextRow row;
        for (int character = 0; character < characters; ++character) {
            row.marks.emplace_back(x, 10 + character * step, width, width);
            fill(row.marks.back());
            row.box |= row.marks.back();
        }
        m_block.rows.push_back(row);
    }

    /// Something in the square after the last character of the last column.
    void addMark(const QRect &place)
    {
        TextRow &row = m_block.rows.back();
        const int top = 10 + static_cast<int>(row.marks.size()) * step;
        row.marks.push_back(place.translated(row.box.left(), top));
        fill(row.marks.back());
        row.box |= row.marks.back();
    }

    [[nodiscard]] std::optional<LaidAcross> laid() const { return laidAcross(m_ink, m_block); }
    TextRow &lastColumn() { return m_block.rows.back(); }

private:
    GrayImage m_ink;
    TextBlock m_block;
};

} // namespace

TEST(VerticalText, MakesARowOfEachColumn)
{
    Columns columns;
    columns.addColumn(100, 7);
    columns.addColumn(40, 5);
    const auto laid = columns.laid();
    ASSERT_TRUE(laid);
    ASSERT_EQ(laid->block.rows.size(), 2U);
    EXPECT_EQ(laid->block.rows[0].marks.size(), 7U);
    EXPECT_EQ(laid->block.rows[1].marks.size(), 5U);
    EXPECT_EQ(laid->block.text, width);
    const TextRow &first = laid->block.rows[0];
    for (std::size_t place = 1; place < first.marks.size(); ++place) {
        EXPECT_GT(first.marks[place].left(), first.marks[place - 1].right());
        EXPECT_NEAR(first.marks[place].top(), first.marks[0].top(), 1);
        EXPECT_EQ(first.marks[place].size(), QSize(width, width));
    }
    EXPECT_GT(laid->block.rows[1].box.top(), first.box.bottom());
}

TEST(VerticalText, PutsACommaWhereRowsHaveIt)
{
    Columns columns;
    columns.addColumn(100, 6);
    columns.addMark(QRect(15, 1, 4, 5)); // upper right
    const auto laid = columns.laid();
    ASSERT_TRUE(laid);
    const TextRow &row = laid->block.rows[0];
    ASSERT_EQ(row.marks.size(), 7U);
    EXPECT_GT(row.marks[6].top(), row.marks[5].center().y());
    EXPECT_LT(row.marks[6].left() - row.marks[5].right(), width / 2);
}

TEST(VerticalText, RaisesTheLongVowelThatLies)
{
    Columns columns;
    columns.addColumn(100, 6);
    columns.addMark(QRect(9, 1, 2, 18));
    const auto laid = columns.laid();
    ASSERT_TRUE(laid);
    EXPECT_EQ(laid->block.rows[0].marks.back().size(), QSize(18, 2));
}

TEST(VerticalText, TurnsBrackets)
{
    Columns columns;
    columns.addColumn(100, 6);
    const int top = 10 + 6 * step;
    columns.fill(QRect(100 + 4, top + 8, 12, 2)); // the bracket that opens a column: its corner is at the upper right
    columns.fill(QRect(100 + 14, top + 8, 2, 10));
    columns.lastColumn().marks.emplace_back(104, top + 8, 12, 10);
    columns.lastColumn().box |= columns.lastColumn().marks.back();
    const auto laid = columns.laid();
    ASSERT_TRUE(laid);
    const QRect box = laid->block.rows[0].marks.back();
    EXPECT_EQ(box.size(), QSize(10, 12));
    EXPECT_GT(laid->ink.at(box.left(), box.bottom()), 0); // its corner at the upper left now
    EXPECT_GT(laid->ink.at(box.right(), box.top()), 0);
    EXPECT_EQ(laid->ink.at(box.right(), box.bottom()), 0);
}

TEST(VerticalText, IsNoneWithoutAnEvenStep)
{
    Columns columns;
    columns.addColumn(100, 1);
    for (int stroke = 0; stroke < 5; ++stroke) {
        columns.addMark(QRect(0, stroke * 17 * stroke, width, 20 + 9 * stroke));
    }
    EXPECT_FALSE(columns.laid());
}

} // namespace orvesa
