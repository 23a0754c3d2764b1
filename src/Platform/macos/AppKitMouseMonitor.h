#pragma once

// Mouse presses in other applications, from a global event monitor.
//
// Main thread. The system keeps a monitor until it is removed; without a handler there is none.

#include "Platform/MouseMonitorPort.h"

#include <memory>

namespace orvesa {

class AppKitMouseMonitor final : public MouseMonitorPort {
public:
    AppKitMouseMonitor();
    ~AppKitMouseMonitor() override;
    Q_DISABLE_COPY_MOVE(AppKitMouseMonitor)

    void setMouseDownHandler(Handler handler) override;

private:
    void mouseDown();

    struct Monitor;
    Handler m_handler;
    std::unique_ptr<Monitor> m_monitor;
};

} // namespace orvesa
