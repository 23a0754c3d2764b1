#pragma once

// A keyboard whose presses go to the monitor that listens. Main thread.

#include "Platform/KeyMonitorPort.h"

namespace orvesa {

class FakeKeyMonitor final : public KeyMonitorPort {
public:
    static constexpr quint32 shift = 0x20000;
    static constexpr quint32 control = 0x40000;
    static constexpr quint32 option = 0x80000;
    static constexpr quint32 command = 0x100000;

    [[nodiscard]] Token addMonitor(Handler handler) override;
    void removeMonitor(Token token) override;

    /// False when no monitor listens.
    bool press(quint32 keyCode, quint32 modifierFlags, const QString &characters);
    [[nodiscard]] bool isMonitored() const { return m_current != 0; }
    /// How many monitors there have been.
    [[nodiscard]] int installs() const { return m_installs; }

private:
    Handler m_handler;
    Token m_current = 0;
    int m_installs = 0;
};

} // namespace orvesa
