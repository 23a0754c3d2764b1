#pragma once

// The status bar, which is always there. Main thread.

#include "Platform/TrayPort.h"

namespace orvesa {

class StatusBarTray final : public TrayPort {
public:
    [[nodiscard]] bool isAvailable() override { return true; }
    void whenAvailable(std::function<void()> handler) override;
};

} // namespace orvesa
