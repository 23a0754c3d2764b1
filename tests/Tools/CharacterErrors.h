#pragma once

// How far a recognised text is from what is there. Pure functions; any thread.

#include <QString>

namespace orvesa {

/// Lines stripped, runs of blanks one blank, blank lines dropped.
[[nodiscard]] QString comparable(const QString &text);

/// Insertions, deletions and replacements between the comparable texts, at most the reference's length.
[[nodiscard]] int characterErrors(const QString &reference, const QString &text);

} // namespace orvesa
