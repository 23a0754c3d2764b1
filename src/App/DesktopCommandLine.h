#pragma once

// The words after "autostart" and "doctor" on the command line. Pure functions of them.

#include "App/CommandLine.h"

namespace orvesa::DesktopCommandLine {

/// on | off | status
[[nodiscard]] CommandLine::Request parseAutostart(const QStringList &words);

/// No words; the option tells whether the network is asked too.
[[nodiscard]] CommandLine::Request parseDoctor(const QStringList &words, CommandLine::Doctor::Reach reach);

} // namespace orvesa::DesktopCommandLine
