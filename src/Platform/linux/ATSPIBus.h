#pragma once

// The accessibility bus: its address and one connection to it.
//
// Main thread. The connection is made at the first need and made anew after the bus was restarted. Every call has a
// bound.

#include "Platform/linux/X11Connection.h"

#include <QDBusConnection>
#include <QString>

#include <chrono>
#include <optional>

namespace orvesa {

class ATSPIBus final {
public:
    /// No single call may wait longer for another process.
    static constexpr std::chrono::milliseconds callBound{250};

    /// The connection to the X server, whose root window also names the bus, must outlive this object.
    explicit ATSPIBus(X11Connection &x11);
    ~ATSPIBus();
    Q_DISABLE_COPY_MOVE(ATSPIBus)

    /// The connection, or nothing when there is no accessibility bus.
    [[nodiscard]] std::optional<QDBusConnection> connection();

private:
    [[nodiscard]] QString address() const;
    void disconnect();

    X11Connection &m_x11;
    QString m_connectionName;
};

} // namespace orvesa
