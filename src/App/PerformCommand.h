#pragma once

// Asks the running utility for an action. Main thread, inside a core application; the port must outlive the command.

#include "App/CommandLine.h"

namespace orvesa {

class SingleInstancePort;

class PerformCommand final {
public:
    /// `identifier` is what the running utility goes by.
    PerformCommand(SingleInstancePort &instance, QString identifier);

    [[nodiscard]] CommandLine::ExitCode run(const QString &action) const;

private:
    SingleInstancePort &m_instance;
    QString m_identifier;
};

} // namespace orvesa
