#pragma once

// The composition of the commands that look at the desktop: the page for bug reports, and the start at login.

#include "App/CommandLine.h"

#include <QCoroTask>

namespace orvesa {

class LinuxDesktop;
struct Services;

namespace Composition {

/// Both must outlive the task.
[[nodiscard]] QCoro::Task<CommandLine::ExitCode> doctor(LinuxDesktop &desktop, Services &services,
                                                        CommandLine::Doctor request);
[[nodiscard]] CommandLine::ExitCode autostart(CommandLine::Autostart request);

} // namespace Composition

} // namespace orvesa
