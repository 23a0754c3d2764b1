#include "Tools/Capture/PixelFormat.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace orvesa {

namespace {

int channel(std::uint32_t pixel, std::uint32_t mask)
{
    if (mask == 0) {
        return 0;
    }
    const std::uint64_t value = (pixel & mask) >> std::countr_zero(mask);
    const std::uint64_t most = mask >> std::countr_zero(mask);
    return static_cast<int>((value * 255 + most / 2) / most);
}

std::uint32_t pixelAt(const PixelFormat &format, const std::uint8_t *place)
{
    const int bytes = format.bitsPerPixel / 8;
    std::uint32_t pixel = 0;
    for (int index = 0; index < bytes; ++index) {
        const int shift = 8 * (format.leastByteFirst ? index : bytes - 1 - index);
        pixel |= static_cast<std::uint32_t>(place[index]) << shift;
    }
    return pixel;
}

} // namespace

std::optional<PixelFormat> pixelFormatOf(xcb_connection_t *connection, const xcb_screen_t &screen)
{
    const xcb_setup_t *setup = xcb_get_setup(connection);
    PixelFormat result;
    result.leastByteFirst = setup->image_byte_order == XCB_IMAGE_ORDER_LSB_FIRST;
    bool isKnown = false;
    for (auto format = xcb_setup_pixmap_formats_iterator(setup); format.rem > 0; xcb_format_next(&format)) {
        if (format.data->depth == screen.root_depth) {
            result.bitsPerPixel = format.data->bits_per_pixel;
            result.scanlinePad = format.data->scanline_pad;
            isKnown = result.bitsPerPixel >= 16;
        }
    }
    for (auto depth = xcb_screen_allowed_depths_iterator(&screen); depth.rem > 0; xcb_depth_next(&depth)) {
        for (auto visual = xcb_depth_visuals_iterator(depth.data); visual.rem > 0; xcb_visualtype_next(&visual)) {
            if (visual.data->visual_id == screen.root_visual) {
                result.redMask = visual.data->red_mask;
                result.greenMask = visual.data->green_mask;
                result.blueMask = visual.data->blue_mask;
            }
        }
    }
    return isKnown ? std::optional(result) : std::nullopt;
}

std::optional<QImage> imageFrom(const PixelFormat &format, const std::uint8_t *bytes, std::size_t count, QSize size)
{
    const auto width = static_cast<std::size_t>(size.width());
    const auto pad = static_cast<std::size_t>(format.scanlinePad);
    const auto bits = width * static_cast<std::size_t>(format.bitsPerPixel);
    const std::size_t stride = (bits + pad - 1) / pad * pad / 8;
    if (count < stride * static_cast<std::size_t>(size.height())) {
        return std::nullopt;
    }
    QImage image(size, QImage::Format_RGB32);
    const bool isQtsOwn = std::endian::native == std::endian::little && format.leastByteFirst &&
                          format.bitsPerPixel == 32 && format.redMask == 0xff0000 && format.greenMask == 0xff00 &&
                          format.blueMask == 0xff;
    for (int y = 0; y < size.height(); ++y) {
        const std::uint8_t *source = bytes + stride * static_cast<std::size_t>(y);
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        if (isQtsOwn) {
            std::memcpy(line, source, width * sizeof(QRgb));
            std::transform(line, line + width, line, [](QRgb pixel) { return pixel | 0xff000000U; });
            continue;
        }
        for (int x = 0; x < size.width(); ++x) {
            const std::uint32_t pixel =
                pixelAt(format, source + static_cast<std::ptrdiff_t>(x) * (format.bitsPerPixel / 8));
            line[x] =
                qRgb(channel(pixel, format.redMask), channel(pixel, format.greenMask), channel(pixel, format.blueMask));
        }
    }
    return image;
}

} // namespace orvesa
