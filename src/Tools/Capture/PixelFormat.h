#pragma once

// How an X server lays out the pixels of its screen, and how to read them. The reading is pure.

#include <QImage>
#include <QSize>

#include <xcb/xcb.h>

#include <cstddef>
#include <cstdint>
#include <optional>

namespace orvesa {

struct PixelFormat {
    int bitsPerPixel = 32; ///< 16, 24 or 32
    int scanlinePad = 32;  ///< bits
    bool leastByteFirst = true;
    std::uint32_t redMask = 0xff0000;
    std::uint32_t greenMask = 0xff00;
    std::uint32_t blueMask = 0xff;
};

/// Nothing for screens with a palette.
[[nodiscard]] std::optional<PixelFormat> pixelFormatOf(xcb_connection_t *connection, const xcb_screen_t &screen);

/// Nothing when there are too few bytes for the size.
[[nodiscard]] std::optional<QImage> imageFrom(const PixelFormat &format, const std::uint8_t *bytes, std::size_t count,
                                              QSize size);

} // namespace orvesa
