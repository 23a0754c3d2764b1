#include "Tools/Recognition/Regions.h"

#include <algorithm>
#include <cstdlib>
#include <numeric>

namespace orvesa {

namespace {

/// Joins labels while an image is read once, and numbers the groups afterwards.
class LabelGroups final {
public:
    std::int32_t add()
    {
        m_parents.push_back(static_cast<std::int32_t>(m_parents.size()));
        return m_parents.back();
    }

    std::int32_t find(std::int32_t label)
    {
        while (parent(label) != label) {
            parent(label) = parent(parent(label));
            label = parent(label);
        }
        return label;
    }

    std::int32_t join(std::int32_t first, std::int32_t second)
    {
        first = find(first);
        second = find(second);
        const std::int32_t least = std::min(first, second);
        parent(std::max(first, second)) = least;
        return least;
    }

    [[nodiscard]] std::size_t count() const { return m_parents.size(); }

private:
    std::int32_t &parent(std::int32_t label) { return m_parents[static_cast<std::size_t>(label)]; }

    std::vector<std::int32_t> m_parents;
};

void measure(RegionMap &map, LabelGroups &groups)
{
    std::vector<std::int32_t> numbers(groups.count(), RegionMap::none);
    std::vector<QRect> boxes;
    std::size_t index = 0;
    for (int y = 0; y < map.height; ++y) {
        for (int x = 0; x < map.width; ++x, ++index) {
            if (map.labels[index] == RegionMap::none) {
                continue;
            }
            std::int32_t &number = numbers[static_cast<std::size_t>(groups.find(map.labels[index]))];
            if (number == RegionMap::none) {
                number = static_cast<std::int32_t>(map.regions.size());
                map.regions.push_back({QRect(x, y, 1, 1), 0});
            }
            map.labels[index] = number;
            Region &region = map.regions[static_cast<std::size_t>(number)];
            region.box.setLeft(std::min(region.box.left(), x));
            region.box.setRight(std::max(region.box.right(), x));
            region.box.setBottom(y);
            ++region.pixels;
        }
    }
}

bool isNear(QRgb first, QRgb second, int tolerance)
{
    return std::abs(qRed(first) - qRed(second)) <= tolerance && std::abs(qGreen(first) - qGreen(second)) <= tolerance &&
           std::abs(qBlue(first) - qBlue(second)) <= tolerance;
}

RegionMap emptyMap(int width, int height)
{
    const auto count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    return {width, height, std::vector<std::int32_t>(count, RegionMap::none), {}};
}

} // namespace

RegionMap flatRegions(const QImage &image, int tolerance)
{
    RegionMap map = emptyMap(image.width(), image.height());
    LabelGroups groups;
    const auto stride = static_cast<std::size_t>(map.width);
    std::size_t index = 0;
    for (int y = 0; y < map.height; ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        const auto *above = y > 0 ? reinterpret_cast<const QRgb *>(image.constScanLine(y - 1)) : nullptr;
        for (int x = 0; x < map.width; ++x, ++index) {
            std::int32_t label = RegionMap::none;
            if (x > 0 && isNear(line[x], line[x - 1], tolerance)) {
                label = map.labels[index - 1];
            }
            if (above != nullptr && isNear(line[x], above[x], tolerance)) {
                const std::int32_t upper = map.labels[index - stride];
                label = label == RegionMap::none ? upper : groups.join(label, upper);
            }
            map.labels[index] = label == RegionMap::none ? groups.add() : label;
        }
    }
    measure(map, groups);
    return map;
}

RegionMap markedRegions(const GrayImage &mask)
{
    RegionMap map = emptyMap(mask.width(), mask.height());
    LabelGroups groups;
    const auto stride = static_cast<std::size_t>(map.width);
    std::size_t index = 0;
    for (int y = 0; y < map.height; ++y) {
        for (int x = 0; x < map.width; ++x, ++index) {
            if (mask.at(x, y) == 0) {
                continue;
            }
            std::int32_t label = RegionMap::none;
            const auto touch = [&](std::size_t neighbour) {
                const std::int32_t other = map.labels[neighbour];
                if (other != RegionMap::none) {
                    label = label == RegionMap::none ? other : groups.join(label, other);
                }
            };
            if (x > 0) {
                touch(index - 1);
            }
            if (y > 0) {
                touch(index - stride);
                if (x > 0) {
                    touch(index - stride - 1);
                }
                if (x + 1 < map.width) {
                    touch(index - stride + 1);
                }
            }
            map.labels[index] = label == RegionMap::none ? groups.add() : label;
        }
    }
    measure(map, groups);
    return map;
}

} // namespace orvesa
