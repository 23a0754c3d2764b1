#pragma once

// The accessibility bus: its address, one connection to it, and who asks there for the capture under way.
//
// Main thread. The connection is made at the first need and made anew after the bus was restarted. Every call has a
// bound.

#include "Platform/linux/X11Connection.h"

#include <QDBusConnection>
#include <QElapsedTimer>
#include <QString>

#include <chrono>
#include <memory>
#include <optional>

namespace orvesa {

class ATSPIClient;

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

    /// For a capture that begins now: all of its waiting time is left. Null when there is no accessibility bus.
    [[nodiscard]] std::shared_ptr<ATSPIClient> newClient();
    /// That of the capture under way, with what is left of its time and what it knows of who is silent; a new one after
    /// five seconds.
    [[nodiscard]] std::shared_ptr<ATSPIClient> client();

private:
    /// A capture may wait for keys and for the pasteboard between two questions.
    static constexpr std::chrono::milliseconds captureLife{5000};

    [[nodiscard]] QString address() const;
    void disconnect();

    X11Connection &m_x11;
    QString m_connectionName;
    std::shared_ptr<ATSPIClient> m_client;
    QElapsedTimer m_sinceFirst; ///< question of that client
};

} // namespace orvesa
