#pragma once

// The words after "settings" and "key" on the command line. Pure functions of them.

#include "App/CommandLine.h"

namespace orvesa::StoreCommandLine {

/// list | get KEY | set KEY VALUE | reset KEY
[[nodiscard]] CommandLine::Request parseSettings(const QStringList &words);

/// set PROVIDER | clear PROVIDER | status
[[nodiscard]] CommandLine::Request parseKey(const QStringList &words);

} // namespace orvesa::StoreCommandLine
