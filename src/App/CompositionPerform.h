#pragma once

// The composition of a process that only asks the running utility for something: it makes nothing but the way there.

#include "App/CommandLine.h"

namespace orvesa::Composition {

/// Asks the running utility for an action.
[[nodiscard]] CommandLine::ExitCode perform(int &argc, char **argv, const QString &action);

} // namespace orvesa::Composition
