#pragma once

// The composition of the command that looks at the desktop for a bug report, and the program's place among those that
// start at login.

#include "App/CommandLine.h"
#include "Platform/linux/XDGAutostart.h"

#include <QCoroTask>

namespace orvesa {

class LinuxDesktop;
struct Services;

namespace Composition {

/// Both must outlive the task.
[[nodiscard]] QCoro::Task<CommandLine::ExitCode> doctor(LinuxDesktop &desktop, Services &services,
                                                        CommandLine::Doctor request);
[[nodiscard]] XDGAutostart autostartEntry();

} // namespace Composition

} // namespace orvesa
