#pragma once

// Mouse presses anywhere on the display, from XInput2's raw events on the root window.
//
// Main thread. The events are selected only while a handler is set, so an idle program is not woken by clicks.

#include "Platform/MouseMonitorPort.h"
#include "Platform/linux/X11Connection.h"

#include <optional>

namespace orvesa {

class X11MouseMonitor final : public MouseMonitorPort {
public:
    /// The connection must outlive this object.
    explicit X11MouseMonitor(X11Connection &connection);
    ~X11MouseMonitor() override;

    void setMouseDownHandler(Handler handler) override;
    [[nodiscard]] bool seesEveryPress() const override;

private:
    bool prepare();
    void select(bool wanted);
    void handle(const xcb_generic_event_t &event);
    [[nodiscard]] std::optional<QPoint> pointerPosition();

    X11Connection &m_connection;
    X11Connection::HandlerToken m_token = 0;
    quint8 m_extensionOpcode = 0;
    Handler m_handler;
};

} // namespace orvesa
