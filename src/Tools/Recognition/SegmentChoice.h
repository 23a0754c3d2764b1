#pragma once

// Which engine's reading of each segment is taken. Values and pure functions; any thread.

#include "Tools/Recognition/Segment.h"

#include <vector>

namespace orvesa {

enum class WideLanguage { japanese, traditionalChinese };

/// A reading worth repeating at another size.
struct SecondReading {
    std::size_t segment = 0;
    WideLanguage language = WideLanguage::japanese;
};

/// Of the segments that are not English for certain, those whose likely reading has weak places.
[[nodiscard]] std::vector<SecondReading> secondReadings(const std::vector<Segment> &segments);

/// Sets what is taken of each segment: all of them together decide where a single one is in doubt.
void choose(std::vector<Segment> &segments);

} // namespace orvesa
