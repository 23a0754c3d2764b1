#pragma once

// An opaque colour in the sRGB space, components 0 to 1, and a two-stop gradient of such colours. Value types, any
// thread.

namespace orvesa {

struct SRGBColor {
    double red = 0;
    double green = 0;
    double blue = 0;
    bool operator==(const SRGBColor &) const = default;
};

struct SRGBGradient {
    SRGBColor start;
    SRGBColor end;
    bool operator==(const SRGBGradient &) const = default;
};

} // namespace orvesa
