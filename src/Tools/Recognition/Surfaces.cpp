#include "Tools/Recognition/Surfaces.h"

#include "Tools/Recognition/LocalBackground.h"
#include "Tools/Recognition/Regions.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <deque>

namespace orvesa {

namespace {

constexpr int flatTolerance = 3; // a gradient's step from pixel to pixel stays below, an antialiased edge does not
constexpr int leastSurfaceSide = 12;
constexpr double leastSurfaceFill = 0.5;
constexpr double wideAsButton = 1.5;
constexpr int paneSide = 48;
/// Less of the image than this being flat, it is a photograph.
constexpr double leastFlatShare = 0.3;
/// Of the strongest ink on its surface; fainter is the blur around letters.
constexpr double maskShare = 0.14;
constexpr int leastInk = 9;

/// A surface is thick and fills its box; a letter, however large, does not. What is square and small may be a letter.
bool isSurface(const Region &region, const QRect &image)
{
    const int width = region.box.width();
    const int height = region.box.height();
    const double fill = static_cast<double>(region.pixels) / (static_cast<double>(width) * height);
    const bool spans = width >= image.width() * 2 / 3 || height >= image.height() * 2 / 3;
    if (spans && fill > 0.25) {
        return true;
    }
    if (width < leastSurfaceSide || height < leastSurfaceSide || fill < leastSurfaceFill) {
        return false;
    }
    return width >= wideAsButton * height || (width >= paneSide && height >= paneSide);
}

struct Background {
    std::vector<QRgb> colors;          ///< of the surface below each pixel
    std::vector<std::int32_t> surface; ///< its number
    std::int32_t surfaces = 0;         ///< how many there are
};

/// Lets each surface's colour flow from its edges over everything that is part of none.
Background spread(const QImage &image, const RegionMap &flat, const std::vector<bool> &isSurfaceNumber)
{
    const std::size_t count = flat.labels.size();
    Background background{std::vector<QRgb>(count), std::vector<std::int32_t>(count, RegionMap::none), 0};
    std::deque<std::size_t> edge;
    const auto stride = static_cast<std::size_t>(flat.width);
    // Surfaces are few; letters and blends, which are regions too, are many.
    std::vector<std::int32_t> numbers(isSurfaceNumber.size(), RegionMap::none);
    for (std::size_t region = 0; region < numbers.size(); ++region) {
        numbers[region] = isSurfaceNumber[region] ? background.surfaces++ : RegionMap::none;
    }
    const auto numberAt = [&](std::size_t index) { return numbers[static_cast<std::size_t>(flat.labels[index])]; };
    const auto isInside = [&](std::size_t index, std::size_t x) {
        return (x == 0 || numberAt(index - 1) != RegionMap::none) &&
               (x + 1 == stride || numberAt(index + 1) != RegionMap::none) &&
               (index < stride || numberAt(index - stride) != RegionMap::none) &&
               (index + stride >= count || numberAt(index + stride) != RegionMap::none);
    };
    for (int y = 0; y < flat.height; ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        for (int x = 0; x < flat.width; ++x) {
            const std::size_t index = static_cast<std::size_t>(y) * stride + static_cast<std::size_t>(x);
            const std::int32_t number = numberAt(index);
            if (number == RegionMap::none) {
                continue;
            }
            background.colors[index] = line[x];
            background.surface[index] = number;
            if (!isInside(index, static_cast<std::size_t>(x))) {
                edge.push_back(index);
            }
        }
    }
    while (!edge.empty()) {
        const std::size_t index = edge.front();
        edge.pop_front();
        const std::size_t x = index % stride;
        const auto flow = [&](std::size_t to) {
            if (background.surface[to] == RegionMap::none) {
                background.surface[to] = background.surface[index];
                background.colors[to] = background.colors[index];
                edge.push_back(to);
            }
        };
        if (x > 0) {
            flow(index - 1);
        }
        if (x + 1 < stride) {
            flow(index + 1);
        }
        if (index >= stride) {
            flow(index - stride);
        }
        if (index + stride < count) {
            flow(index + stride);
        }
    }
    return background;
}

std::uint8_t distance(QRgb first, QRgb second)
{
    const int sum = std::abs(qRed(first) - qRed(second)) + std::abs(qGreen(first) - qGreen(second)) +
                    std::abs(qBlue(first) - qBlue(second));
    return static_cast<std::uint8_t>(sum / 3);
}

/// Nearly the strongest ink on each surface; a few stray pixels do not count.
std::vector<int> strongestInk(const GrayImage &ink, const Background &background)
{
    constexpr int strayPixels = 4;
    const auto surfaces = static_cast<std::size_t>(background.surfaces);
    std::vector<std::array<int, 256>> histograms(surfaces);
    for (std::size_t index = 0; index < background.surface.size(); ++index) {
        ++histograms[static_cast<std::size_t>(background.surface[index])][ink.pixels()[index]];
    }
    std::vector<int> strongest(surfaces, 0);
    for (std::size_t surface = 0; surface < surfaces; ++surface) {
        int seen = 0;
        int value = 255;
        while (value > 0 && (seen += histograms[surface][static_cast<std::size_t>(value)]) <= strayPixels) {
            --value;
        }
        strongest[surface] = value;
    }
    return strongest;
}

/// Whether `color` lies between the other two: what antialiasing leaves where one surface ends on another.
bool isBlend(QRgb color, QRgb first, QRgb second)
{
    constexpr int slack = 12;
    const auto lies = [](int value, int one, int other) {
        return value >= std::min(one, other) - slack && value <= std::max(one, other) + slack;
    };
    if (!lies(qRed(color), qRed(first), qRed(second)) || !lies(qGreen(color), qGreen(first), qGreen(second)) ||
        !lies(qBlue(color), qBlue(first), qBlue(second))) {
        return false;
    }
    const int whole = distance(first, second);
    return std::abs(distance(color, first) + distance(color, second) - whole) <= slack;
}

GrayImage rimOf(const QImage &image, const Background &background, const GrayImage &mask)
{
    constexpr int reach = 2;
    GrayImage rim(mask.width(), mask.height());
    const auto at = [&](int x, int y) {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(mask.width()) + static_cast<std::size_t>(x);
    };
    for (int y = 0; y < mask.height(); ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        for (int x = 0; x < mask.width(); ++x) {
            if (mask.at(x, y) == 0) {
                continue;
            }
            const std::size_t own = at(x, y);
            const auto bordersOn = [&](int toX, int toY) {
                if (toX < 0 || toY < 0 || toX >= mask.width() || toY >= mask.height()) {
                    return false;
                }
                const std::size_t other = at(toX, toY);
                return background.surface[other] != background.surface[own] &&
                       isBlend(line[x], background.colors[own], background.colors[other]);
            };
            bool isRim = false;
            for (int step = -reach; step <= reach && !isRim; ++step) {
                isRim = bordersOn(x + step, y - reach) || bordersOn(x + step, y + reach) ||
                        bordersOn(x - reach, y + step) || bordersOn(x + reach, y + step);
            }
            rim.at(x, y) = isRim ? 255 : 0;
        }
    }
    return rim;
}

Writing onSurfaces(const QImage &image, const RegionMap &flat, const std::vector<bool> &isSurfaceNumber)
{
    const Background background = spread(image, flat, isSurfaceNumber);
    Writing writing{GrayImage(flat.width, flat.height), GrayImage(flat.width, flat.height), {}, {}};
    std::size_t index = 0;
    for (int y = 0; y < flat.height; ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        for (int x = 0; x < flat.width; ++x, ++index) {
            writing.ink.at(x, y) = distance(line[x], background.colors[index]);
        }
    }
    const std::vector<int> strongest = strongestInk(writing.ink, background);
    index = 0;
    for (int y = 0; y < flat.height; ++y) {
        for (int x = 0; x < flat.width; ++x, ++index) {
            const int most = strongest[static_cast<std::size_t>(background.surface[index])];
            const int least = std::max(leastInk, static_cast<int>(std::lround(most * maskShare)));
            writing.mask.at(x, y) = writing.ink.at(x, y) >= least ? 255 : 0;
        }
    }
    writing.rim = rimOf(image, background, writing.mask);
    writing.surface = background.surface;
    return writing;
}

} // namespace

Writing writingOn(const QImage &image)
{
    const QImage colors = image.convertToFormat(QImage::Format_RGB32);
    const RegionMap flat = flatRegions(colors, flatTolerance);
    std::vector<bool> surfaces(flat.regions.size());
    double flatPixels = 0;
    for (std::size_t number = 0; number < surfaces.size(); ++number) {
        surfaces[number] = isSurface(flat.regions[number], colors.rect());
        flatPixels += surfaces[number] ? flat.regions[number].pixels : 0;
    }
    if (flatPixels < leastFlatShare * colors.width() * colors.height()) {
        return writingOnPhotograph(colors);
    }
    return onSurfaces(colors, flat, surfaces);
}

} // namespace orvesa
