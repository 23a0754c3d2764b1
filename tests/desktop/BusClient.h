#pragma once

// A private connection to a message bus, for waiting on names and calling services.
//
// Main thread.

#include "desktop/Waiting.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QString>
#include <QVariantList>

#include <chrono>

namespace orvesa::desktop {

class BusClient final {
public:
    /// Throws DesktopError when nobody answers at the address.
    explicit BusClient(const QString &address);
    ~BusClient();
    BusClient(const BusClient &) = delete;
    BusClient &operator=(const BusClient &) = delete;

    [[nodiscard]] bool hasOwner(const QString &name);
    void awaitOwner(const QString &name, std::chrono::milliseconds deadline = usualDeadline);
    void awaitNoOwner(const QString &name, std::chrono::milliseconds deadline = usualDeadline);
    /// Throws DesktopError on an error reply.
    QDBusMessage call(const QString &service, const QString &path, const QString &interface, const QString &method,
                      const QVariantList &arguments = {});

private:
    void awaitOwnership(const QString &name, bool owned, std::chrono::milliseconds deadline);

    QString m_name;
    QDBusConnection m_connection;
};

} // namespace orvesa::desktop
