#pragma once

// The commit that this build was made from. The value is compiled into a file of its own, so that a new commit costs
// one small compilation. Any thread.

#include <QString>

namespace orvesa {

/// The commit's short name; empty when the sources came without their history.
[[nodiscard]] QString buildCommit();

/// "Orvesa Translate 1.2.3 (0a1b2c3)"
[[nodiscard]] QString versionText();

} // namespace orvesa
