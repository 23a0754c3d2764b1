#pragma once

// Switches the start at login on and off from the command line. Main thread; the port must outlive the command.

#include "App/CommandLine.h"

namespace orvesa {

class AutostartPort;

class AutostartCommand final {
public:
    explicit AutostartCommand(AutostartPort &autostart);

    [[nodiscard]] CommandLine::ExitCode run(CommandLine::Autostart request) const;

private:
    AutostartPort &m_autostart;
};

} // namespace orvesa
