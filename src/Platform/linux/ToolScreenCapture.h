#pragma once

// The program's own screen capture tool, run as a child process. Main thread.

#include "Platform/ScreenCapturePort.h"

namespace orvesa {

class ToolScreenCapture final : public ScreenCapturePort {
public:
    /// `executable` is an absolute path.
    explicit ToolScreenCapture(QString executable);

    [[nodiscard]] QCoro::Task<bool> captureInteractively(QString outputPath, std::stop_token stop) override;

private:
    QString m_executable;
};

} // namespace orvesa
