#include "App/AutostartCommand.h"

#include "App/StandardStreams.h"
#include "Platform/AutostartPort.h"

using namespace Qt::StringLiterals;

namespace orvesa {

using CommandLine::ExitCode;

AutostartCommand::AutostartCommand(AutostartPort &autostart) : m_autostart(autostart) {}

ExitCode AutostartCommand::run(CommandLine::Autostart request) const
{
    using Action = CommandLine::Autostart::Action;
    if (request.action == Action::status) {
        return StandardStreams::writeOutput(m_autostart.isOn() ? u"on"_s : u"off"_s) ? ExitCode::success
                                                                                     : ExitCode::failure;
    }
    const bool isDone = request.action == Action::on ? m_autostart.turnOn() : m_autostart.turnOff();
    if (!isDone) {
        StandardStreams::writeError(u"The entry in the autostart folder could not be changed."_s);
    }
    return isDone ? ExitCode::success : ExitCode::failure;
}

} // namespace orvesa
