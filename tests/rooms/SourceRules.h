#pragma once

// Rules that every source file keeps, beyond what compiler and clang-tidy can see.
//
// Pure functions over a tree. Each gives its findings as one line of text each; none means that the tree is in order.

#include "rooms/SourceTree.h"

namespace orvesa {

/// Headers that do not begin with "#pragma once"; sources that do not include their own header first.
[[nodiscard]] QStringList wrongBeginnings(const SourceTree &tree);

/// Conditional compilation by platform, and libraries of one desktop, outside Platform/ and App/Composition*. The
/// tree's root is the folder src.
[[nodiscard]] QStringList platformLeaks(const SourceTree &tree);

/// Ways to show text from outside as anything but plain text, in UI/ and App/. The tree's root is the folder src.
[[nodiscard]] QStringList richTexts(const SourceTree &tree);

/// Sources that the CMakeLists.txt above them does not list, and lists made by globbing.
[[nodiscard]] QStringList unlistedSources(const SourceTree &tree);

} // namespace orvesa
