#include "Tools/Recognition/Layout.h"

#include "Tools/Recognition/Spans.h"

#include <algorithm>
#include <cstdlib>
#include <optional>

namespace orvesa {

namespace {

constexpr double gutterToText = 1.7;
constexpr std::size_t leastRows = 3;
constexpr double leastColumnToText = 5;

struct Columns {
    Span zone;      ///< down, what the columns take up
    int gutter = 0; ///< across, the middle between them
};

/// Lines of running text nearly fill their column in one piece; entries of a table do not.
bool isProse(const std::vector<TextRow> &rows, int columnWidth, int text)
{
    constexpr double fullLine = 0.72;
    constexpr double leastWidthToText = 6;
    const auto pieces =
        std::ranges::count_if(rows, [&](const TextRow &row) { return segmentsOf(row, text).size() > 1; });
    if (columnWidth < leastWidthToText * text || 4 * pieces > static_cast<std::ptrdiff_t>(rows.size())) {
        return false;
    }
    const auto full =
        std::ranges::count_if(rows, [&](const TextRow &row) { return row.box.width() >= fullLine * columnWidth; });
    return static_cast<double>(full) >= 0.65 * static_cast<double>(rows.size());
}

/// Rows side by side that do not stand on common lines belong to different texts.
bool areMisaligned(const std::vector<TextRow> &left, const std::vector<TextRow> &right, int text)
{
    std::size_t apart = 0;
    for (const TextRow &row : left) {
        int nearest = text;
        for (const TextRow &other : right) {
            nearest = std::min({nearest, std::abs(row.box.bottom() - other.box.bottom()),
                                std::abs(row.box.center().y() - other.box.center().y())});
        }
        apart += nearest > 0.3 * text ? 1 : 0;
    }
    return 2 * apart > left.size();
}

bool areColumns(const Marks &left, const Marks &right, int text)
{
    const std::vector<TextRow> leftRows = rowsOf(left, text);
    const std::vector<TextRow> rightRows = rowsOf(right, text);
    const int leftWidth = boundsOf(left).width();
    const int rightWidth = boundsOf(right).width();
    if (leftRows.size() < leastRows || rightRows.size() < leastRows ||
        std::min(leftWidth, rightWidth) < leastColumnToText * text) {
        return false;
    }
    return areMisaligned(leftRows, rightRows, text) ||
           (isProse(leftRows, leftWidth, text) && isProse(rightRows, rightWidth, text));
}

std::optional<int> gutterIn(const Marks &marks, int text)
{
    std::vector<Span> gaps = gapsBetween(coveredSpans(marks, Axis::across));
    std::erase_if(gaps, [&](const Span &gap) { return gap.length() < gutterToText * text; });
    std::ranges::sort(gaps, std::greater(), &Span::length);
    for (const Span &gap : gaps) {
        const Marks left = marksWithin(marks, Axis::across, {0, gap.begin});
        const QRect bounds = boundsOf(marks);
        const Marks right = marksWithin(marks, Axis::across, {gap.end, bounds.right()});
        if (areColumns(left, right, text)) {
            return (gap.begin + gap.end) / 2;
        }
    }
    return std::nullopt;
}

/// The tallest stretch of rows that two columns share.
std::optional<Columns> columnsIn(const Marks &marks, int text)
{
    const std::vector<Span> bands = coveredSpans(marks, Axis::down);
    constexpr std::size_t mostBands =
        120; // a tall page of lists is rows, and trying every stretch of it takes too long
    if (bands.size() > mostBands) {
        return std::nullopt;
    }
    for (std::size_t count = bands.size(); count > 0; --count) {
        for (std::size_t first = 0; first + count <= bands.size(); ++first) {
            const Span zone{bands[first].begin, bands[first + count - 1].end};
            if (zone.length() < static_cast<int>(leastRows) * text) {
                continue;
            }
            if (const auto gutter = gutterIn(marksWithin(marks, Axis::down, zone), text)) {
                return Columns{zone, *gutter};
            }
        }
    }
    return std::nullopt;
}

/// A third of them are not longer.
double lowerThird(std::vector<Span> spans)
{
    if (spans.empty()) {
        return 0;
    }
    const auto place = spans.begin() + static_cast<std::ptrdiff_t>(spans.size() / 3);
    std::ranges::nth_element(spans, place, {}, &Span::length);
    return place->length();
}

double meanLength(const std::vector<Span> &spans)
{
    double sum = 0;
    for (const Span &span : spans) {
        sum += span.length();
    }
    return spans.empty() ? 0 : sum / static_cast<double>(spans.size());
}

/// Characters one below the other, close together, in columns as wide as a character that stand further apart.
bool runsDown(const Marks &marks)
{
    constexpr double leastHeightToWidth = 4;
    const std::vector<Span> columns = coveredSpans(marks, Axis::across);
    int tallest = 0;
    int widest = 0;
    double gapsDown = 0;
    for (const Span &column : columns) {
        const Marks own = marksWithin(marks, Axis::across, column);
        tallest = std::max(tallest, boundsOf(own).height());
        widest = std::max(widest, column.length());
        // Strokes that lie alone and marks in a corner leave wide gaps; many gaps are narrow nevertheless.
        const std::vector<Span> gaps = gapsBetween(coveredSpans(own, Axis::down));
        gapsDown = std::max(gapsDown, std::min(lowerThird(gaps), meanLength(gaps)));
    }
    constexpr int leastWidth = 8;
    if (columns.empty() || widest < leastWidth || tallest < leastHeightToWidth * widest) {
        return false;
    }
    const bool evenWidth =
        std::ranges::all_of(columns, [&](const Span &column) { return column.length() > 0.6 * widest; });
    if (!evenWidth || gapsDown > 0.3 * widest) {
        return false;
    }
    return columns.size() == 1 || meanLength(gapsBetween(columns)) > std::max(1.3 * gapsDown, 0.2 * widest);
}

std::vector<TextRow> columnsDown(const Marks &marks)
{
    std::vector<TextRow> columns;
    for (const Span &span : coveredSpans(marks, Axis::across)) {
        Marks own = marksWithin(marks, Axis::across, span);
        const QRect box = boundsOf(own);
        columns.insert(columns.begin(), TextRow{box, std::move(own)});
    }
    return columns;
}

void addBlocks(const Marks &marks, std::vector<TextBlock> &blocks)
{
    if (marks.empty()) {
        return;
    }
    const int text = typicalHeight(marks);
    const QRect bounds = boundsOf(marks);
    if (runsDown(marks)) {
        blocks.push_back({TextBlock::Direction::down, bounds, text, columnsDown(marks)});
        return;
    }
    if (const auto columns = columnsIn(marks, text)) {
        const Marks zone = marksWithin(marks, Axis::down, columns->zone);
        addBlocks(marksWithin(marks, Axis::down, {bounds.top(), columns->zone.begin - 1}), blocks);
        addBlocks(marksWithin(zone, Axis::across, {bounds.left(), columns->gutter}), blocks);
        addBlocks(marksWithin(zone, Axis::across, {columns->gutter, bounds.right()}), blocks);
        addBlocks(marksWithin(marks, Axis::down, {columns->zone.end + 1, bounds.bottom()}), blocks);
        return;
    }
    blocks.push_back({TextBlock::Direction::across, bounds, text, rowsOf(marks, text)});
}

} // namespace

std::vector<TextBlock> blocksOf(const Marks &marks)
{
    std::vector<TextBlock> blocks;
    addBlocks(marks, blocks);
    return blocks;
}

} // namespace orvesa
