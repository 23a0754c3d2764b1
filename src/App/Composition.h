#pragma once

// The composition root: the only place that names the desktop's adapters and puts the program together.

#include "App/CommandLine.h"

namespace orvesa::Composition {

/// Runs the utility until it is quit, or hands over to the one that runs already.
[[nodiscard]] CommandLine::ExitCode runUtility(int &argc, char **argv);

/// Runs one of the commands and prints what it has to say.
[[nodiscard]] CommandLine::ExitCode runCommand(int &argc, char **argv, const CommandLine::Request &request);

} // namespace orvesa::Composition
