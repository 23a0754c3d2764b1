#include "Tools/Recognition/Rows.h"

#include "Tools/Recognition/Spans.h"

#include <algorithm>
#include <limits>

namespace orvesa {

namespace {

constexpr double wholeRow = 0.45;   ///< of the text height: anything lower is a part of a row, such as dots
constexpr double partsReach = 0.45; ///< of the text height, from such a part to its row
constexpr double twoRows = 1.75;    ///< of the text height: anything taller may be rows that touch
constexpr double segmentGap = 1.5;  ///< of the row's height

TextRow rowOf(Marks marks)
{
    const QRect box = boundsOf(marks);
    return {box, std::move(marks)};
}

int distanceDown(const QRect &first, const QRect &second)
{
    return std::max({0, second.top() - first.bottom() - 1, first.top() - second.bottom() - 1});
}

int inkWidth(const TextRow &row)
{
    int width = 0;
    for (const QRect &mark : row.marks) {
        width += mark.width();
    }
    return width;
}

/// Rows that touch: the middles of their larger marks lie in groups.
std::vector<TextRow> separated(const TextRow &band, int text)
{
    const auto isLarge = [&](const QRect &mark) {
        return mark.height() >= 0.55 * text && mark.height() < twoRows * text;
    };
    Marks large;
    std::ranges::copy_if(band.marks, std::back_inserter(large), isLarge);
    std::ranges::sort(large, {}, [](const QRect &mark) { return mark.center().y(); });
    std::vector<TextRow> rows;
    int last = std::numeric_limits<int>::min() / 2;
    for (const QRect &mark : large) {
        if (mark.center().y() - last > 0.4 * text) {
            rows.emplace_back();
        }
        last = mark.center().y();
        rows.back().marks.push_back(mark);
        rows.back().box |= mark;
    }
    // A tail that reaches into the next row is no row of its own.
    constexpr double leastShare = 0.25;
    int widest = 0;
    for (const TextRow &row : rows) {
        widest = std::max(widest, inkWidth(row));
    }
    std::erase_if(rows, [&](const TextRow &row) { return inkWidth(row) < leastShare * widest; });
    if (rows.size() < 2) {
        return {band};
    }
    const std::vector<TextRow> anchors = rows;
    for (const QRect &mark : band.marks) {
        const bool isPlaced = std::ranges::any_of(
            anchors, [&](const TextRow &row) { return std::ranges::find(row.marks, mark) != row.marks.end(); });
        if (isPlaced || mark.height() >= twoRows * text) {
            continue;
        }
        const auto nearest = std::ranges::min_element(anchors, {}, [&](const TextRow &row) {
            return 2 * distanceDown(row.box, mark) * text + std::abs(row.box.center().y() - mark.center().y());
        });
        TextRow &row = rows[static_cast<std::size_t>(nearest - anchors.begin())];
        row.marks.push_back(mark);
        row.box |= mark;
    }
    return rows;
}

/// Dots of an i, upper strokes, dashes: what is too low to be a row joins the one it is close to.
std::vector<TextRow> withPartsJoined(std::vector<TextRow> bands, int text)
{
    const auto isPart = [&](const TextRow &row) { return row.box.height() < wholeRow * text; };
    std::vector<TextRow> rows;
    for (std::size_t index = 0; index < bands.size(); ++index) {
        if (!isPart(bands[index])) {
            rows.push_back(std::move(bands[index]));
            continue;
        }
        const int above =
            rows.empty() ? std::numeric_limits<int>::max() : distanceDown(rows.back().box, bands[index].box);
        const int below = index + 1 < bands.size() ? distanceDown(bands[index].box, bands[index + 1].box)
                                                   : std::numeric_limits<int>::max();
        TextRow *to = nullptr;
        if (std::min(above, below) <= partsReach * text) {
            to = above < below ? &rows.back() : &bands[index + 1];
        }
        if (to == nullptr) {
            rows.push_back(std::move(bands[index]));
        } else {
            to->box |= bands[index].box;
            to->marks.insert(to->marks.end(), bands[index].marks.begin(), bands[index].marks.end());
        }
    }
    return rows;
}

/// Characters that are made of two halves, one above the other: alone in their row they leave a gap in the middle.
std::vector<TextRow> withHalvesJoined(std::vector<TextRow> rows, int text)
{
    constexpr double mostHalf = 0.72;
    constexpr double mostWhole = 1.25;
    constexpr double mostGap = 0.14;
    std::vector<TextRow> joined;
    for (TextRow &row : rows) {
        if (!joined.empty()) {
            TextRow &last = joined.back();
            const QRect both = last.box | row.box;
            if (std::max(last.box.height(), row.box.height()) <= mostHalf * text && both.height() <= mostWhole * text &&
                distanceDown(last.box, row.box) <= std::max(1.0, mostGap * text)) {
                last.box = both;
                last.marks.insert(last.marks.end(), row.marks.begin(), row.marks.end());
                continue;
            }
        }
        joined.push_back(std::move(row));
    }
    return joined;
}

} // namespace

std::vector<TextRow> rowsOf(const Marks &marks, int text)
{
    std::vector<TextRow> bands;
    for (const Span &span : coveredSpans(marks, Axis::down)) {
        bands.push_back(rowOf(marksWithin(marks, Axis::down, span)));
    }
    std::vector<TextRow> rows;
    for (TextRow &row : withPartsJoined(withHalvesJoined(std::move(bands), text), text)) {
        if (row.box.height() < twoRows * text) {
            rows.push_back(std::move(row));
            continue;
        }
        for (TextRow &part : separated(row, text)) {
            rows.push_back(std::move(part));
        }
    }
    return rows;
}

std::vector<QRect> segmentsOf(const TextRow &row, int text)
{
    const int reach = static_cast<int>(segmentGap * std::max<double>(row.box.height(), 0.8 * text));
    std::vector<QRect> segments;
    for (const Span &span : coveredSpans(row.marks, Axis::across, reach)) {
        segments.push_back(boundsOf(marksWithin(row.marks, Axis::across, span)));
    }
    return segments;
}

} // namespace orvesa
