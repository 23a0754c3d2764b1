#include "Tools/Recognition/Reading.h"

#include <algorithm>
#include <optional>

namespace orvesa {

namespace {

double meanOf(const Reading &reading, double Glyph::*confidence)
{
    double sum = 0;
    int count = 0;
    for (const ReadLine &line : reading.lines) {
        for (const Glyph &glyph : line.glyphs) {
            sum += glyph.*confidence;
            ++count;
        }
    }
    return count == 0 ? 0 : sum / count;
}

} // namespace

double confidenceOf(const Reading &reading)
{
    return meanOf(reading, &Glyph::confidence);
}

double wordConfidenceOf(const Reading &reading)
{
    return meanOf(reading, &Glyph::wordConfidence);
}

double weakestOf(const Reading &reading)
{
    std::optional<double> weakest;
    for (const ReadLine &line : reading.lines) {
        for (const Glyph &glyph : line.glyphs) {
            weakest = std::min(weakest.value_or(glyph.confidence), glyph.confidence);
        }
    }
    return weakest.value_or(0);
}

} // namespace orvesa
