#pragma once

// The system's own interactive screenshot tool. Main thread.

#include "Platform/ScreenCapturePort.h"

namespace orvesa {

class SystemScreenCapture final : public ScreenCapturePort {
public:
    [[nodiscard]] QCoro::Task<bool> captureInteractively(QString outputPath, std::stop_token stop) override;
};

} // namespace orvesa
