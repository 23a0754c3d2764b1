#pragma once

// One byte for each pixel, in rows without padding. A value; any thread.

#include <QRect>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace orvesa {

class GrayImage final {
public:
    GrayImage() = default;
    GrayImage(int width, int height, std::uint8_t value = 0);

    [[nodiscard]] int width() const { return m_width; }
    [[nodiscard]] int height() const { return m_height; }
    [[nodiscard]] QRect area() const { return {0, 0, m_width, m_height}; }
    [[nodiscard]] bool isEmpty() const { return m_pixels.empty(); }

    [[nodiscard]] std::uint8_t at(int x, int y) const { return m_pixels[index(x, y)]; }
    [[nodiscard]] std::uint8_t &at(int x, int y) { return m_pixels[index(x, y)]; }
    [[nodiscard]] const std::uint8_t *row(int y) const { return m_pixels.data() + index(0, y); }
    [[nodiscard]] std::uint8_t *row(int y) { return m_pixels.data() + index(0, y); }
    [[nodiscard]] const std::vector<std::uint8_t> &pixels() const { return m_pixels; }

    /// The part inside `part`, which must lie in the image.
    [[nodiscard]] GrayImage cropped(const QRect &part) const;

    bool operator==(const GrayImage &) const = default;

private:
    [[nodiscard]] std::size_t index(int x, int y) const
    {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(m_width) + static_cast<std::size_t>(x);
    }

    int m_width = 0;
    int m_height = 0;
    std::vector<std::uint8_t> m_pixels;
};

} // namespace orvesa
