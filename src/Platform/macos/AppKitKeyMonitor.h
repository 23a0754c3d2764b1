#pragma once

// Key presses for the shortcut recorder, from a local event monitor: those that reach this program's own windows.
//
// Main thread. The system keeps the monitor until it is removed. Registered shortcuts do not come this way; the system
// hands them to their handlers first.

#include "Platform/KeyMonitorPort.h"

#include <memory>

namespace orvesa {

class AppKitKeyMonitor final : public KeyMonitorPort {
public:
    AppKitKeyMonitor();
    ~AppKitKeyMonitor() override;
    Q_DISABLE_COPY_MOVE(AppKitKeyMonitor)

    [[nodiscard]] Token addMonitor(Handler handler) override;
    void removeMonitor(Token token) override;

private:
    struct Monitor;
    /// Whether the press or release belongs to the recorder; its handler has been called then.
    bool takes(const MonitoredKeyPress &press, bool isDown, bool isRepeat);
    void stopMonitoring();

    Handler m_handler;
    Token m_current = 0;
    Token m_lastToken = 0;
    std::unique_ptr<Monitor> m_monitor;
};

} // namespace orvesa
