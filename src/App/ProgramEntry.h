#pragma once

// Where the process entry finds the program proper: in a library of its own, looked for beside the executable and where
// an installation puts it. The build says in which; null stands for the executable itself.
// Main thread, before anything else runs.

namespace orvesa {

inline constexpr const char *programLibrary = ORVESA_PROGRAM_LIBRARY;
inline constexpr const char *programEntry = "orvesaTranslateMain";

/// Runs what the arguments ask for and returns the process's exit code.
using ProgramEntry = int(int &argc, char **argv);

} // namespace orvesa
