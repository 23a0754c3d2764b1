#include "Tools/Recognition/GrayImage.h"

#include <algorithm>

namespace orvesa {

GrayImage::GrayImage(int width, int height, std::uint8_t value)
    : m_width(width), m_height(height),
      m_pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), value)
{
}

GrayImage GrayImage::cropped(const QRect &part) const
{
    GrayImage result(part.width(), part.height());
    for (int y = 0; y < part.height(); ++y) {
        const std::uint8_t *source = row(part.top() + y) + part.left();
        std::copy(source, source + part.width(), result.row(y));
    }
    return result;
}

} // namespace orvesa
