#include "Tools/Recognition/LocalBackground.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <vector>

namespace orvesa {

namespace {

constexpr int cell = 8;        // medians are taken for cells of this side
constexpr int cellsAround = 3; // and reach that many cells to each side
constexpr int leastInk = 18;
constexpr double noiseToInk = 4;

GrayImage luminance(const QImage &image)
{
    GrayImage result(image.width(), image.height());
    for (int y = 0; y < image.height(); ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            result.at(x, y) = static_cast<std::uint8_t>(qGray(line[x]));
        }
    }
    return result;
}

/// A small blur takes most of the noise and little of the letters.
GrayImage smoothed(const GrayImage &image)
{
    GrayImage result = image;
    for (int y = 1; y + 1 < image.height(); ++y) {
        for (int x = 1; x + 1 < image.width(); ++x) {
            const int sides = image.at(x - 1, y) + image.at(x + 1, y) + image.at(x, y - 1) + image.at(x, y + 1);
            const int corners =
                image.at(x - 1, y - 1) + image.at(x + 1, y - 1) + image.at(x - 1, y + 1) + image.at(x + 1, y + 1);
            result.at(x, y) = static_cast<std::uint8_t>((4 * image.at(x, y) + 2 * sides + corners + 8) / 16);
        }
    }
    return result;
}

/// How much neighbours differ where nothing is written: most places.
int noiseOf(const GrayImage &image)
{
    std::array<int, 256> histogram{};
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 1; x < image.width(); ++x) {
            ++histogram[static_cast<std::size_t>(std::abs(image.at(x, y) - image.at(x - 1, y)))];
            ++count;
        }
    }
    int seen = 0;
    for (int value = 0; value < 256; ++value) {
        seen += histogram[static_cast<std::size_t>(value)];
        if (2 * seen >= count) {
            return value;
        }
    }
    return 0;
}

class CellMedians final {
public:
    explicit CellMedians(const GrayImage &image)
        : m_columns((image.width() + cell - 1) / cell), m_rows((image.height() + cell - 1) / cell),
          m_histograms(static_cast<std::size_t>(m_columns) * static_cast<std::size_t>(m_rows))
    {
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                ++histogram(x / cell, y / cell)[image.at(x, y)];
            }
        }
        m_medians.reserve(m_histograms.size());
        for (int row = 0; row < m_rows; ++row) {
            for (int column = 0; column < m_columns; ++column) {
                m_medians.push_back(medianAround(column, row));
            }
        }
    }

    /// Between the cells' middles, a blend of the four nearest.
    [[nodiscard]] int at(int x, int y) const
    {
        const double column = std::clamp((x + 0.5) / cell - 0.5, 0.0, m_columns - 1.0);
        const double row = std::clamp((y + 0.5) / cell - 0.5, 0.0, m_rows - 1.0);
        const int left = static_cast<int>(column);
        const int top = static_cast<int>(row);
        const int right = std::min(left + 1, m_columns - 1);
        const int bottom = std::min(top + 1, m_rows - 1);
        const double across = column - left;
        const double down = row - top;
        return static_cast<int>(
            std::lround((median(left, top) * (1 - across) + median(right, top) * across) * (1 - down) +
                        (median(left, bottom) * (1 - across) + median(right, bottom) * across) * down));
    }

private:
    using Histogram = std::array<int, 256>;

    [[nodiscard]] std::size_t index(int column, int row) const
    {
        return static_cast<std::size_t>(row) * static_cast<std::size_t>(m_columns) + static_cast<std::size_t>(column);
    }
    [[nodiscard]] Histogram &histogram(int column, int row) { return m_histograms[index(column, row)]; }
    [[nodiscard]] double median(int column, int row) const { return m_medians[index(column, row)]; }

    [[nodiscard]] int medianAround(int column, int row)
    {
        Histogram sum{};
        int count = 0;
        for (int y = std::max(0, row - cellsAround); y <= std::min(m_rows - 1, row + cellsAround); ++y) {
            for (int x = std::max(0, column - cellsAround); x <= std::min(m_columns - 1, column + cellsAround); ++x) {
                const Histogram &part = histogram(x, y);
                for (std::size_t value = 0; value < part.size(); ++value) {
                    sum[value] += part[value];
                    count += part[value];
                }
            }
        }
        int seen = 0;
        int value = 0;
        while (value < 255 && 2 * (seen += sum[static_cast<std::size_t>(value)]) < count) {
            ++value;
        }
        return value;
    }

    int m_columns;
    int m_rows;
    std::vector<Histogram> m_histograms;
    std::vector<int> m_medians;
};

} // namespace

Writing writingOnPhotograph(const QImage &image)
{
    const GrayImage gray = luminance(image);
    const GrayImage smooth = smoothed(gray);
    const CellMedians background(smooth);
    const int least = std::max(leastInk, static_cast<int>(noiseToInk * noiseOf(smooth)));
    Writing writing{GrayImage(gray.width(), gray.height()), GrayImage(gray.width(), gray.height()), {}, {}};
    // Letters are either all darker or all lighter than what they stand on: the stronger side is the writing.
    double darker = 0;
    double lighter = 0;
    for (int y = 0; y < gray.height(); ++y) {
        for (int x = 0; x < gray.width(); ++x) {
            const int difference = background.at(x, y) - smooth.at(x, y);
            (difference > 0 ? darker : lighter) += std::abs(difference) >= least ? std::abs(difference) : 0;
        }
    }
    const int sign = darker >= lighter ? 1 : -1;
    for (int y = 0; y < gray.height(); ++y) {
        for (int x = 0; x < gray.width(); ++x) {
            const int ink = std::clamp(sign * (background.at(x, y) - smooth.at(x, y)), 0, 255);
            writing.ink.at(x, y) = static_cast<std::uint8_t>(ink);
            writing.mask.at(x, y) = ink >= least ? 255 : 0;
        }
    }
    return writing;
}

} // namespace orvesa
