#include "Tools/Recognition/Marks.h"

#include "Tools/Recognition/Regions.h"

#include <algorithm>

namespace orvesa {

namespace {

constexpr int ruleThickness = 3;
constexpr int leastRuleLength = 40;
constexpr double ruleToText = 3.5; ///< a dash is shorter than this many text heights
constexpr double frameToText = 1.6;
constexpr double mostFrameFill = 0.45;

bool isRule(const QRect &box, int text)
{
    const int least = std::max(leastRuleLength, static_cast<int>(ruleToText * text));
    // A bar between words is hardly taller than they are; the side of a frame is.
    constexpr double sideToText = 1.6;
    return (box.height() <= ruleThickness && box.width() >= least) ||
           (box.width() <= ruleThickness && box.height() >= sideToText * text);
}

/// Of the pixels along the four sides of the box, how many carry the mark.
double sideShare(const RegionMap &map, std::int32_t number)
{
    const QRect box = map.regions[static_cast<std::size_t>(number)].box;
    const auto isNearSide = [&](int x, int y, int stepX, int stepY) {
        for (int depth = 0; depth <= ruleThickness; ++depth) {
            if (map.at(x + depth * stepX, y + depth * stepY) == number) {
                return 1;
            }
        }
        return 0;
    };
    int covered = 0;
    for (int x = box.left(); x <= box.right(); ++x) {
        covered += isNearSide(x, box.top(), 0, 1) + isNearSide(x, box.bottom(), 0, -1);
    }
    for (int y = box.top(); y <= box.bottom(); ++y) {
        covered += isNearSide(box.left(), y, 1, 0) + isNearSide(box.right(), y, -1, 0);
    }
    return static_cast<double>(covered) / (2.0 * (box.width() + box.height()));
}

/// The outline of a button, a field or a table: large, mostly empty, with ink along its sides.
bool isFrame(const RegionMap &map, std::int32_t number, int text)
{
    const Region &region = map.regions[static_cast<std::size_t>(number)];
    const int width = region.box.width();
    const int height = region.box.height();
    const double least = frameToText * text;
    if (std::min(width, height) <= 2 * ruleThickness || height < least || width < least) {
        return false;
    }
    const double fill = static_cast<double>(region.pixels) / (static_cast<double>(width) * height);
    constexpr double leastSideShare = 0.7;
    return fill < mostFrameFill && sideShare(map, number) >= leastSideShare;
}

/// Lattices of several cells have no ink along some sides, yet nearly nothing in their box.
bool isGrid(const Region &region, int text)
{
    constexpr double gridToText = 4;
    constexpr double mostGridFill = 0.1;
    const int width = region.box.width();
    const int height = region.box.height();
    return width >= gridToText * text && height >= gridToText * text &&
           region.pixels < mostGridFill * static_cast<double>(width) * height;
}

/// For each mark, whether it lies on the edge between two surfaces: the rim of a button, not writing on either.
std::vector<bool> onEdges(const RegionMap &map, const Writing &writing)
{
    constexpr double leastShare = 0.25; // on the less of the two
    std::vector<bool> result(map.regions.size(), false);
    if (writing.surface.empty()) {
        return result;
    }
    std::vector<std::int32_t> first(map.regions.size(), RegionMap::none);
    std::vector<int> elsewhere(map.regions.size(), 0);
    for (std::size_t index = 0; index < map.labels.size(); ++index) {
        if (map.labels[index] == RegionMap::none) {
            continue;
        }
        const auto number = static_cast<std::size_t>(map.labels[index]);
        if (first[number] == RegionMap::none) {
            first[number] = writing.surface[index];
        }
        elsewhere[number] += writing.surface[index] != first[number] ? 1 : 0;
    }
    for (std::size_t number = 0; number < result.size(); ++number) {
        const double share = static_cast<double>(elsewhere[number]) / map.regions[number].pixels;
        result[number] = share >= leastShare && share <= 1 - leastShare;
    }
    return result;
}

/// For each mark, whether it is no more than the antialiased edge of a surface: the round corners of buttons and
/// bubbles.
std::vector<bool> onRims(const RegionMap &map, const Writing &writing)
{
    constexpr double leastShare = 0.7;
    std::vector<bool> result(map.regions.size(), false);
    if (writing.surface.empty()) {
        return result;
    }
    std::vector<int> pixels(map.regions.size(), 0);
    std::size_t index = 0;
    for (int y = 0; y < map.height; ++y) {
        for (int x = 0; x < map.width; ++x, ++index) {
            if (map.labels[index] != RegionMap::none && writing.rim.at(x, y) != 0) {
                ++pixels[static_cast<std::size_t>(map.labels[index])];
            }
        }
    }
    for (std::size_t number = 0; number < result.size(); ++number) {
        result[number] = pixels[number] >= leastShare * map.regions[number].pixels;
    }
    return result;
}

/// Pixels of the mark inside its box, well away from the sides.
int pixelsInside(const RegionMap &map, std::int32_t number)
{
    const QRect box = map.regions[static_cast<std::size_t>(number)].box;
    const int inset = std::max(2, box.width() / 4);
    int count = 0;
    for (int y = box.top() + inset; y <= box.bottom() - inset; ++y) {
        for (int x = box.left() + inset; x <= box.right() - inset; ++x) {
            count += map.at(x, y) == number ? 1 : 0;
        }
    }
    return count;
}

/// A box to tick, a radio button: square, hollow or filled, the first thing in its row, and apart from what follows.
bool isTickBox(const RegionMap &map, std::int32_t number, int text)
{
    constexpr double leastSide = 0.75;
    constexpr double mostSide = 2.2;
    constexpr double tallerThanLetters = 1.12;
    constexpr double leastGap = 0.36; // of the side: ideographs stand closer together
    const Region &region = map.regions[static_cast<std::size_t>(number)];
    const QRect box = region.box;
    const double aspect = static_cast<double>(box.width()) / box.height();
    constexpr int leastPixels = 9;
    if (aspect < 0.88 || aspect > 1.14 || box.height() < std::max<double>(leastPixels, leastSide * text) ||
        box.height() > mostSide * text) {
        return false;
    }
    const double fill = static_cast<double>(region.pixels) / (static_cast<double>(box.width()) * box.height());
    const bool isHollow = fill < 0.5 && pixelsInside(map, number) == 0;
    const bool isSquare = isHollow && sideShare(map, number) >= 0.85;
    const bool isFilled = fill > 0.78 && sideShare(map, number) >= 0.92;
    const bool isTallOutline = isHollow && box.height() >= tallerThanLetters * text;
    if (!(isSquare || isFilled || isTallOutline)) {
        return false;
    }
    int next = map.width;
    bool isFirst = true;
    for (const Region &other : map.regions) {
        const bool isInRow = other.box.top() <= box.bottom() && other.box.bottom() >= box.top();
        if (!isInRow || box.contains(other.box)) {
            continue;
        }
        isFirst = isFirst && (other.box.right() < box.left() - 4 * text || other.box.left() > box.left() ||
                              other.box.height() >= 3 * box.height());
        next = other.box.left() > box.right() ? std::min(next, other.box.left()) : next;
    }
    return isFirst && next < map.width && next - box.right() - 1 >= leastGap * box.width();
}

/// Takes the text cursor off the first letter of its line: a bar at the side of a mark, taller than what it touches.
bool takeCursors(Writing &writing, const RegionMap &map, int text)
{
    constexpr double leastHeight = 1.2; // of a full-size character
    constexpr int mostWidth = 2;
    bool found = false;
    for (std::size_t number = 0; number < map.regions.size(); ++number) {
        const QRect box = map.regions[number].box;
        if (box.height() < leastHeight * text || box.height() > 3 * text || box.width() < text / 4 ||
            box.width() > 3 * text) {
            continue;
        }
        const auto isOwn = [&](int x, int y) { return map.at(x, y) == static_cast<std::int32_t>(number); };
        int bar = 0;
        int first = box.bottom();
        int last = box.top();
        for (int x = box.left(); x <= box.right(); ++x) {
            int own = 0;
            for (int y = box.top(); y <= box.bottom(); ++y) {
                own += isOwn(x, y) ? 1 : 0;
            }
            if (x - box.left() < mostWidth && own == box.height()) {
                ++bar;
                continue;
            }
            for (int y = box.top(); y <= box.bottom(); ++y) {
                first = isOwn(x, y) ? std::min(first, y) : first;
                last = isOwn(x, y) ? std::max(last, y) : last;
            }
        }
        // Bowls and arms of letters reach one end of their stem at least.
        const int beyond = std::max(2, box.height() / 10);
        if (bar == 0 || first - box.top() < beyond || box.bottom() - last < beyond) {
            continue;
        }
        found = true;
        for (int y = box.top(); y <= box.bottom(); ++y) {
            for (int x = box.left(); x < box.left() + bar; ++x) {
                writing.ink.at(x, y) = 0;
                writing.mask.at(x, y) = 0;
            }
        }
    }
    return found;
}

/// On a photograph, specks that are far smaller than the dot of an i.
bool isNoise(const Region &region, int text)
{
    constexpr double leastSideToText = 0.14;
    const double least = leastSideToText * text;
    return region.pixels < least * least;
}

} // namespace

QRect boundsOf(const Marks &marks)
{
    QRect bounds;
    for (const QRect &mark : marks) {
        bounds |= mark;
    }
    return bounds;
}

int typicalHeight(const Marks &marks)
{
    constexpr int leastHeight = 4; // dots and dashes say nothing about the size of the text
    std::vector<int> heights;
    for (const QRect &mark : marks) {
        if (mark.height() >= leastHeight) {
            heights.push_back(mark.height());
        }
    }
    if (heights.empty()) {
        return boundsOf(marks).height();
    }
    const auto place = heights.begin() + static_cast<std::ptrdiff_t>(heights.size() * 4 / 5);
    std::nth_element(heights.begin(), place, heights.end());
    return *place;
}

Marks takeMarks(Writing &writing)
{
    RegionMap map = markedRegions(writing.mask);
    Marks all;
    all.reserve(map.regions.size());
    for (const Region &region : map.regions) {
        all.push_back(region.box);
    }
    const int text = typicalHeight(all);
    if (takeCursors(writing, map, text)) {
        map = markedRegions(writing.mask);
    }
    std::vector<bool> dropped = onEdges(map, writing);
    const std::vector<bool> isRim = onRims(map, writing);
    const bool isPhotograph = writing.surface.empty();
    Marks kept;
    for (std::size_t number = 0; number < map.regions.size(); ++number) {
        const Region &region = map.regions[number];
        const auto label = static_cast<std::int32_t>(number);
        dropped[number] = dropped[number] || isRim[number] || isRule(region.box, text) || isGrid(region, text) ||
                          (isPhotograph && isNoise(region, text)) || isFrame(map, label, text) ||
                          isTickBox(map, label, text);
        if (!dropped[number]) {
            kept.push_back(region.box);
        }
    }
    for (int y = 0; y < map.height; ++y) {
        for (int x = 0; x < map.width; ++x) {
            const std::int32_t label = map.at(x, y);
            if (label != RegionMap::none && dropped[static_cast<std::size_t>(label)]) {
                writing.ink.at(x, y) = 0;
                writing.mask.at(x, y) = 0;
            }
        }
    }
    return kept;
}

} // namespace orvesa
