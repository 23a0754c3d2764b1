#pragma once

// A mouse whose button a test presses. Main thread.

#include "Platform/MouseMonitorPort.h"

namespace orvesa {

class FakeMouseMonitor final : public MouseMonitorPort {
public:
    void setMouseDownHandler(Handler handler) override;

    [[nodiscard]] bool seesEveryPress() const override { return m_seesEveryPress; }
    void setSeesEveryPress(bool sees) { m_seesEveryPress = sees; }

    /// Nothing happens while nobody monitors.
    void pressAt(QPoint position);
    [[nodiscard]] bool isMonitoring() const { return static_cast<bool>(m_handler); }

private:
    bool m_seesEveryPress = true;
    Handler m_handler;
};

} // namespace orvesa
