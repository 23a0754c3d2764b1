#pragma once

// A tray that is there or comes when the test says so. Main thread.

#include "Platform/TrayPort.h"

#include <utility>

namespace orvesa {

class FakeTray final : public TrayPort {
public:
    [[nodiscard]] bool isAvailable() override { return m_isAvailable; }
    void whenAvailable(std::function<void()> handler) override { m_handler = std::move(handler); }

    void setAvailable(bool isAvailable) { m_isAvailable = isAvailable; }
    /// It comes; whoever waits is told.
    void appear()
    {
        m_isAvailable = true;
        if (const auto handler = std::exchange(m_handler, nullptr)) {
            handler();
        }
    }
    [[nodiscard]] bool isAwaited() const { return static_cast<bool>(m_handler); }

private:
    bool m_isAvailable = true;
    std::function<void()> m_handler;
};

} // namespace orvesa
