#pragma once

// Runs one command of the command line through the same services, settings and keys as the utility, without a display.
//
// Main thread, inside a running core application. Everything must outlive the run.

#include "App/CommandLine.h"
#include "Models/AITask.h"

#include <QCoroTask>

#include <QString>

namespace orvesa {

class AIProviderSource;
class SettingsStore;

class CommandRunner final {
public:
    CommandRunner(const SettingsStore &settings, const AIProviderSource &providers);

    /// Prints the answer to standard output, or the failure to standard error.
    [[nodiscard]] QCoro::Task<CommandLine::ExitCode> run(CommandLine::Request request) const;

private:
    [[nodiscard]] QCoro::Task<CommandLine::ExitCode> generate(QList<CommandLine::TextArgument> arguments, AITask task,
                                                              CommandLine::Overrides overrides) const;

    const SettingsStore &m_settings;
    const AIProviderSource &m_providers;
};

} // namespace orvesa
