#pragma once

// What is written on an image, whatever the colours: for each pixel, how far it is from the background that it lies on.
// Pure functions; any thread.
//
// A screen is made of flat surfaces: a page, a button, a dark terminal. Each pixel that is part of none takes the
// colour of the nearest surface for its background, so that white letters on a blue button and black ones on the page
// beside it come out alike. Where there are no flat surfaces, as on a photograph, the background is what most of a
// pixel's surroundings look like.

#include "Tools/Recognition/GrayImage.h"

#include <QImage>

#include <cstdint>
#include <vector>

namespace orvesa {

struct Writing {
    GrayImage ink;  ///< distance from the background: 0 for the background itself
    GrayImage mask; ///< 255 where the ink is part of something, 0 elsewhere
    std::vector<std::int32_t>
        surface; ///< the number of the surface below each pixel, row by row; empty on a photograph
    /// 255 where a masked pixel beside another surface is no more than the blend of the two; empty on a photograph.
    GrayImage rim;
};

[[nodiscard]] Writing writingOn(const QImage &image);

} // namespace orvesa
