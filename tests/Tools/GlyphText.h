#pragma once

// What a line of glyphs says, for comparison with what should have been read. A pure function; any thread.

#include "Tools/Recognition/Reading.h"

namespace orvesa {

/// The glyphs' characters, with one blank before each that begins a word, other than the first.
[[nodiscard]] QString textOf(const ReadLine &line);

} // namespace orvesa
