#pragma once

// The items in the desktop's key store (Secret Service), by the attributes "service" and "account".
//
// Main thread. One private connection to the session bus. Secrets travel in memory only.

#include <QByteArray>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QString>

#include <optional>

namespace orvesa::desktop {

class KeyStoreItems final {
public:
    explicit KeyStoreItems(const QString &sessionBusAddress);
    ~KeyStoreItems();
    KeyStoreItems(const KeyStoreItems &) = delete;
    KeyStoreItems &operator=(const KeyStoreItems &) = delete;

    /// Creates the item or replaces its secret. Throws DesktopError when the store refuses.
    void store(const QString &service, const QString &account, const QByteArray &secret);
    [[nodiscard]] std::optional<QByteArray> lookup(const QString &service, const QString &account);
    void remove(const QString &service, const QString &account);
    /// Locked and unlocked items of the service; of one account when given.
    [[nodiscard]] int count(const QString &service, const QString &account = {});
    [[nodiscard]] bool isDefaultCollectionLocked();

private:
    [[nodiscard]] QList<QDBusObjectPath> items(const QString &service, const QString &account);
    [[nodiscard]] QDBusObjectPath session();
    QDBusMessage call(const QString &path, const QString &interface, const QString &method,
                      const QVariantList &arguments);

    QString m_connectionName;
    QDBusConnection m_connection;
    QDBusObjectPath m_session;
};

} // namespace orvesa::desktop
