#pragma once

// The desktop's interactive screenshot tool. Main thread.

#include <QCoroTask>

#include <QString>

#include <stop_token>

namespace orvesa {

class ScreenCapturePort {
public:
    virtual ~ScreenCapturePort() = default;

    /// Runs the tool with "-i", "-x" and the path, and suspends until it has ended. False when it could not be started.
    /// The user cancelled when there is no file at the path afterwards. A stop request ends the tool.
    [[nodiscard]] virtual QCoro::Task<bool> captureInteractively(QString outputPath, std::stop_token stop) = 0;
};

} // namespace orvesa
