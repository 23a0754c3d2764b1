#pragma once

// Writing on images without flat surfaces: photographs, and text over pictures. Pure; any thread.

#include "Tools/Recognition/Surfaces.h"

#include <QImage>

namespace orvesa {

/// `image` is 32 bits a pixel. The background of a pixel is the middle brightness of its surroundings; ink below four
/// times the image's noise is none.
[[nodiscard]] Writing writingOnPhotograph(const QImage &image);

} // namespace orvesa
