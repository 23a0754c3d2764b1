#pragma once

// Stretches along one axis: where marks lie, and where there is room between them. Pure functions; any thread.

#include "Tools/Recognition/Marks.h"

#include <vector>

namespace orvesa {

/// From `begin` to `end`, both inside.
struct Span {
    int begin = 0;
    int end = 0;

    [[nodiscard]] int length() const { return end - begin + 1; }
    bool operator==(const Span &) const = default;
};

enum class Axis { across, down };

[[nodiscard]] Span spanOf(const QRect &box, Axis axis);

/// What the marks cover, in order; stretches that are at most `reach` apart are one.
[[nodiscard]] std::vector<Span> coveredSpans(const Marks &marks, Axis axis, int reach = 0);

/// What lies between the covered stretches.
[[nodiscard]] std::vector<Span> gapsBetween(const std::vector<Span> &covered);

[[nodiscard]] Marks marksWithin(const Marks &marks, Axis axis, Span span);

} // namespace orvesa
