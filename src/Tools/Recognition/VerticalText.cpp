#include "Tools/Recognition/VerticalText.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

namespace orvesa {

namespace {

/// Of each line of a column, the share that is inked.
class Profile final {
public:
    Profile(const GrayImage &ink, const QRect &column) : m_top(column.top())
    {
        int strongest = 0;
        for (int y = column.top(); y <= column.bottom(); ++y) {
            strongest = std::max<int>(strongest,
                                      *std::max_element(ink.row(y) + column.left(), ink.row(y) + column.right() + 1));
        }
        for (int y = column.top(); y <= column.bottom(); ++y) {
            const auto inked = std::count_if(ink.row(y) + column.left(), ink.row(y) + column.right() + 1,
                                             [&](std::uint8_t value) { return 3 * value > strongest; });
            m_shares.push_back(static_cast<double>(inked) / column.width());
        }
    }

    [[nodiscard]] int top() const { return m_top; }
    [[nodiscard]] int bottom() const { return m_top + static_cast<int>(m_shares.size()) - 1; }
    [[nodiscard]] double at(int y) const
    {
        return y < m_top || y > bottom() ? 0 : m_shares[static_cast<std::size_t>(y - m_top)];
    }

private:
    int m_top;
    std::vector<double> m_shares;
};

struct Steps {
    double first = 0; ///< where the first square begins
    double cost = std::numeric_limits<double>::max();
};

/// How much ink lies where squares of one height meet, and near there.
double costOf(const Profile &column, double pitch, double first)
{
    double cost = 0;
    int edges = 0;
    for (double edge = first + pitch; edge < column.bottom(); edge += pitch) {
        const int y = static_cast<int>(std::floor(edge));
        cost += column.at(y) + column.at(y - 1) + 0.25 * (column.at(y + 1) + column.at(y - 2));
        ++edges;
    }
    return edges == 0 ? 0 : cost / (2.5 * edges);
}

Steps bestSteps(const Profile &column, double pitch)
{
    Steps best;
    // The first character may be low in its square, but not lie outside.
    for (double first = column.top() - 0.6 * pitch; first <= column.top(); first += 0.5) {
        const double cost = costOf(column, pitch, first);
        if (cost < best.cost) {
            best = {first, cost};
        }
    }
    return best;
}

int widestOf(const TextBlock &down)
{
    int widest = 0;
    for (const TextRow &column : down.rows) {
        widest = std::max(widest, column.box.width());
    }
    return widest;
}

/// From one character to the next, if they follow each other by an even step.
std::optional<double> pitchOf(const std::vector<Profile> &columns, int widest)
{
    constexpr double least = 0.9; // of the width of a column
    constexpr double most = 1.75;
    constexpr double mostCost = 0.2;
    double best = 0;
    double bestCost = std::numeric_limits<double>::max();
    for (double pitch = least * widest; pitch <= most * widest; pitch += 0.1) {
        double cost = 0;
        int height = 0;
        for (const Profile &column : columns) {
            const int own = column.bottom() - column.top() + 1;
            cost += bestSteps(column, pitch).cost * own;
            height += own;
        }
        cost /= height;
        if (cost < bestCost) {
            bestCost = cost;
            best = pitch;
        }
    }
    return bestCost <= mostCost ? std::optional(best) : std::nullopt;
}

struct Cell {
    GrayImage ink; ///< a square
    QRect box;     ///< of the ink in it
};

QRect inkBox(const GrayImage &ink)
{
    constexpr int leastInk = 40;
    QRect box;
    for (int y = 0; y < ink.height(); ++y) {
        for (int x = 0; x < ink.width(); ++x) {
            if (ink.at(x, y) >= leastInk) {
                box |= QRect(x, y, 1, 1);
            }
        }
    }
    return box;
}

GrayImage moved(const GrayImage &ink, QPoint by)
{
    GrayImage result(ink.width(), ink.height());
    for (int y = 0; y < ink.height(); ++y) {
        for (int x = 0; x < ink.width(); ++x) {
            if (result.area().contains(x + by.x(), y + by.y())) {
                result.at(x + by.x(), y + by.y()) = ink.at(x, y);
            }
        }
    }
    return result;
}

/// A quarter turn against the clock.
GrayImage turned(const GrayImage &ink)
{
    GrayImage result(ink.width(), ink.height());
    const int last = ink.width() - 1;
    for (int y = 0; y < ink.height(); ++y) {
        for (int x = 0; x < ink.width(); ++x) {
            result.at(y, last - x) = ink.at(x, y);
        }
    }
    return result;
}

/// How much of a side of the box carries ink.
double sideShare(const GrayImage &ink, const QRect &box, Qt::Edge side)
{
    constexpr int depth = 3;
    constexpr int leastInk = 40;
    const bool isUpright = side == Qt::LeftEdge || side == Qt::RightEdge;
    const int length = isUpright ? box.height() : box.width();
    int covered = 0;
    for (int along = 0; along < length; ++along) {
        bool isInked = false;
        for (int in = 0; in < std::min(depth, isUpright ? box.width() : box.height()); ++in) {
            const int x = side == Qt::LeftEdge    ? box.left() + in
                          : side == Qt::RightEdge ? box.right() - in
                                                  : box.left() + along;
            const int y = side == Qt::TopEdge      ? box.top() + in
                          : side == Qt::BottomEdge ? box.bottom() - in
                                                   : box.top() + along;
            isInked = isInked || ink.at(x, y) >= leastInk;
        }
        covered += isInked ? 1 : 0;
    }
    return static_cast<double>(covered) / length;
}

/// Corner brackets, long vowels and dots of omission lie on their side in columns.
bool isTurned(const GrayImage &ink, const QRect &box)
{
    const int side = ink.width();
    if (box.width() < 0.25 * side && box.height() > 0.5 * side) {
        return true;
    }
    if (box.width() > 0.7 * side || box.height() > 0.7 * side || box.width() < 0.2 * side ||
        box.height() < 0.2 * side) {
        return false;
    }
    constexpr double covered = 0.85;
    constexpr double bare = 0.45;
    const auto share = [&](Qt::Edge edge) { return sideShare(ink, box, edge); };
    const bool opens = share(Qt::TopEdge) > covered && share(Qt::RightEdge) > covered && share(Qt::LeftEdge) < bare &&
                       share(Qt::BottomEdge) < bare;
    const bool closes = share(Qt::BottomEdge) > covered && share(Qt::LeftEdge) > covered &&
                        share(Qt::RightEdge) < bare && share(Qt::TopEdge) < bare;
    return opens || closes;
}

Cell cellOf(GrayImage ink)
{
    QRect box = inkBox(ink);
    if (box.isEmpty()) {
        return {std::move(ink), box};
    }
    const int side = ink.width();
    if (isTurned(ink, box)) {
        ink = turned(ink);
    } else if (box.width() < 0.75 * side && box.height() < 0.72 * side && box.center().x() > 0.56 * side &&
               box.center().y() < 0.5 * side) {
        // In columns small characters stand at the upper right of their square, in rows at the bottom, commas and
        // stops at the left.
        const bool isMark = box.width() < 0.5 * side && box.height() < 0.5 * side;
        const int left = isMark ? side / 10 : (side - box.width()) / 2;
        const int top = side - side / 10 - box.height();
        ink = moved(ink, QPoint(left, top) - box.topLeft());
    }
    return {ink, inkBox(ink)};
}

GrayImage squareAt(const GrayImage &ink, const TextRow &column, double top, double pitch, int side)
{
    GrayImage square(side, side);
    const int own = static_cast<int>(std::lround(top));
    const int next = static_cast<int>(std::lround(top + pitch));
    const QPoint corner(column.box.center().x() - side / 2, own - (side - (next - own)) / 2);
    // What the next characters and other columns have beside it stays out.
    const QRect area(QPoint(column.box.left() - 1, own), QPoint(column.box.right() + 1, next - 1));
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x) {
            const QPoint from = corner + QPoint(x, y);
            if (area.contains(from) && ink.area().contains(from)) {
                square.at(x, y) = ink.at(from.x(), from.y());
            }
        }
    }
    return square;
}

} // namespace

std::optional<LaidAcross> laidAcross(const GrayImage &ink, const TextBlock &down)
{
    std::vector<Profile> columns;
    columns.reserve(down.rows.size());
    for (const TextRow &column : down.rows) {
        columns.emplace_back(ink, column.box);
    }
    const int widest = widestOf(down);
    const std::optional<double> pitch = pitchOf(columns, widest);
    if (!pitch) {
        return std::nullopt;
    }
    const int side = std::max(static_cast<int>(std::ceil(*pitch)), widest + 2);
    std::vector<std::vector<Cell>> rows;
    std::size_t longest = 0;
    for (std::size_t number = 0; number < columns.size(); ++number) {
        const TextRow &column = down.rows[number];
        std::vector<Cell> cells;
        for (double top = bestSteps(columns[number], *pitch).first; top < column.box.bottom(); top += *pitch) {
            cells.push_back(cellOf(squareAt(ink, column, top, *pitch, side)));
        }
        longest = std::max(longest, cells.size());
        rows.push_back(std::move(cells));
    }
    // Squares as wide as the characters, whatever room is between them in the columns.
    const int advance = std::clamp(static_cast<int>(std::lround(1.08 * widest)), 1, side);
    LaidAcross result{GrayImage(static_cast<int>(longest) * advance + side, static_cast<int>(rows.size()) * 2 * side),
                      {TextBlock::Direction::across, {}, 0, {}}};
    for (std::size_t number = 0; number < rows.size(); ++number) {
        TextRow row;
        const int top = static_cast<int>(number) * 2 * side + side / 2;
        for (std::size_t place = 0; place < rows[number].size(); ++place) {
            const Cell &cell = rows[number][place];
            const int left = static_cast<int>(place) * advance + (side - advance) / 2;
            for (int y = 0; y < side; ++y) {
                for (int x = 0; x < side; ++x) {
                    std::uint8_t &to = result.ink.at(left + x, top + y);
                    to = std::max(to, cell.ink.at(x, y));
                }
            }
            if (!cell.box.isEmpty()) {
                row.marks.push_back(cell.box.translated(left, top));
                row.box |= row.marks.back();
            }
        }
        if (!row.marks.empty()) {
            result.block.box |= row.box;
            result.block.rows.push_back(std::move(row));
        }
    }
    Marks marks;
    for (const TextRow &row : result.block.rows) {
        marks.insert(marks.end(), row.marks.begin(), row.marks.end());
    }
    // Characters that touched in their column came out as one.
    result.block.text = typicalHeight(marks);
    return result;
}

} // namespace orvesa
