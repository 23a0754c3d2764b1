#include "App/PerformCommand.h"

#include "App/StandardStreams.h"
#include "Platform/SingleInstancePort.h"

#include <utility>

namespace orvesa {

using namespace Qt::StringLiterals;
using CommandLine::ExitCode;

PerformCommand::PerformCommand(SingleInstancePort &instance, QString identifier)
    : m_instance(instance), m_identifier(std::move(identifier))
{
}

ExitCode PerformCommand::run(const QString &action) const
{
    if (m_instance.ask(m_identifier, action)) {
        return ExitCode::success;
    }
    StandardStreams::writeError(u"The utility does not run in this session."_s);
    return ExitCode::failure;
}

} // namespace orvesa
