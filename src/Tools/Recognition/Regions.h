#pragma once

// Connected areas of one label map: where they are and how large. Values and pure functions; any thread.

#include "Tools/Recognition/GrayImage.h"

#include <QImage>
#include <QRect>

#include <cstdint>
#include <vector>

namespace orvesa {

struct Region {
    QRect box;
    int pixels = 0;
};

/// Which region each pixel belongs to, row by row; `none` for pixels of no region.
struct RegionMap {
    static constexpr std::int32_t none = -1;

    int width = 0;
    int height = 0;
    std::vector<std::int32_t> labels;
    std::vector<Region> regions;

    [[nodiscard]] std::int32_t at(int x, int y) const
    {
        return labels[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x)];
    }
};

/// Areas in which no two neighbours differ by more than `tolerance` in any channel. `image` is 32 bits a pixel.
[[nodiscard]] RegionMap flatRegions(const QImage &image, int tolerance);

/// The marks above a threshold of their own for each pixel, touching at sides or corners.
[[nodiscard]] RegionMap markedRegions(const GrayImage &mask);

} // namespace orvesa
