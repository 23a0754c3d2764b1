#include "Tools/Recognition/SegmentImage.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace orvesa {

namespace {

constexpr int margin = 1; ///< the blur around the outermost marks
constexpr int leastContrast = 24;

/// The strongest ink near each column: writing of several colours in one row comes to one contrast.
std::vector<int> contrastByColumn(const GrayImage &ink, int reach)
{
    std::vector<int> strongest(static_cast<std::size_t>(ink.width()), 0);
    for (int y = 0; y < ink.height(); ++y) {
        for (int x = 0; x < ink.width(); ++x) {
            int &most = strongest[static_cast<std::size_t>(x)];
            most = std::max<int>(most, ink.at(x, y));
        }
    }
    std::vector<int> contrast(strongest.size());
    for (int x = 0; x < ink.width(); ++x) {
        const auto first = strongest.begin() + std::max(0, x - reach);
        const auto last = strongest.begin() + std::min(ink.width(), x + reach + 1);
        contrast[static_cast<std::size_t>(x)] = std::max(leastContrast, *std::max_element(first, last));
    }
    return contrast;
}

/// The four weights of a cubic convolution at a distance of 0 to 1 from the second point.
std::array<double, 4> cubicWeights(double t)
{
    constexpr double a = -0.5;
    const auto nearWeight = [](double d) { return ((a + 2) * d - (a + 3)) * d * d + 1; };
    const auto farWeight = [](double d) { return ((a * d - 5 * a) * d + 8 * a) * d - 4 * a; };
    return {farWeight(1 + t), nearWeight(t), nearWeight(1 - t), farWeight(2 - t)};
}

using Plane = std::vector<float>;

/// One axis resampled: `lines` lines of `length` samples, `step` apart, to lines of `wanted` samples.
Plane resampled(const Plane &from, int lines, int length, int wanted, double enlargement)
{
    Plane to(static_cast<std::size_t>(lines) * static_cast<std::size_t>(wanted));
    for (int target = 0; target < wanted; ++target) {
        const double place = (target + 0.5) / enlargement - 0.5;
        const int base = static_cast<int>(std::floor(place));
        const std::array<double, 4> weights = cubicWeights(place - base);
        std::array<std::size_t, 4> sources{};
        for (int tap = 0; tap < 4; ++tap) {
            sources[static_cast<std::size_t>(tap)] =
                static_cast<std::size_t>(std::clamp(base - 1 + tap, 0, length - 1));
        }
        for (int line = 0; line < lines; ++line) {
            const float *source = from.data() + static_cast<std::size_t>(line) * static_cast<std::size_t>(length);
            double sum = 0;
            for (std::size_t tap = 0; tap < 4; ++tap) {
                sum += weights[tap] * static_cast<double>(source[sources[tap]]);
            }
            // Written across, so that a second turn resamples the other axis.
            to[static_cast<std::size_t>(target) * static_cast<std::size_t>(lines) + static_cast<std::size_t>(line)] =
                static_cast<float>(sum);
        }
    }
    return to;
}

double enlargement(int textHeight, double wanted)
{
    constexpr double least = 1;
    constexpr double most = 3;
    return std::clamp(wanted / std::max(1, textHeight), least, most);
}

} // namespace

double enlargementFor(int textHeight)
{
    return enlargement(textHeight, 32);
}

double chineseEnlargementFor(int textHeight)
{
    return enlargement(textHeight, 22);
}

double largerEnlargementFor(int textHeight)
{
    return enlargement(textHeight, 28);
}

double segmentInset(double enlargement)
{
    return readingBorder + margin * enlargement;
}

GrayImage segmentImage(const GrayImage &ink, const QRect &part, int text, double enlargement)
{
    const QRect box = part.adjusted(-margin, -margin, margin, margin).intersected(ink.area());
    const GrayImage crop = ink.cropped(box);
    const std::vector<int> contrast = contrastByColumn(crop, std::max(4, text));
    Plane plane(crop.pixels().size());
    std::size_t index = 0;
    for (int y = 0; y < crop.height(); ++y) {
        for (int x = 0; x < crop.width(); ++x, ++index) {
            plane[index] =
                static_cast<float>(crop.at(x, y)) / static_cast<float>(contrast[static_cast<std::size_t>(x)]);
        }
    }
    const int width = std::max(1, static_cast<int>(std::lround(crop.width() * enlargement)));
    const int height = std::max(1, static_cast<int>(std::lround(crop.height() * enlargement)));
    const Plane turned = resampled(plane, crop.height(), crop.width(), width, enlargement);
    const Plane large = resampled(turned, width, crop.height(), height, enlargement);
    GrayImage result(width + 2 * readingBorder, height + 2 * readingBorder, 255);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const float value =
                large[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x)];
            result.at(x + readingBorder, y + readingBorder) =
                static_cast<std::uint8_t>(std::lround(255 * (1 - std::clamp(value, 0.0F, 1.0F))));
        }
    }
    return result;
}

} // namespace orvesa
