#pragma once

// What the operations of one key store share: the bounds, the store as it was reached the last time, where items were
// found, and a way to end them all when the store goes. No secret is in it.
//
// Main thread. Held by the key store and by every running operation, which may outlive it.

#include "Platform/linux/SecretLibrary.h"
#include "Platform/linux/SecretServiceKeyStore.h"

#include <map>
#include <set>
#include <utility>

namespace orvesa {

class SecretServiceConversation;

class SecretServiceSession final {
public:
    /// The store, reached over the bus. Whoever gets one takes references of its own.
    struct Reached {
        GDBusConnection *bus = nullptr;
        SecretService *service = nullptr;
    };

    SecretServiceSession(QString productName, SecretServiceBounds bounds);
    ~SecretServiceSession();
    Q_DISABLE_COPY_MOVE(SecretServiceSession)

    /// The store that was reached, as long as it is the same process and the bus is there; then nobody has to wait for
    /// anything to reach it again.
    [[nodiscard]] Reached reached() const;
    void setReached(const SecretLibrary &library, Reached store);

    [[nodiscard]] const QString &productName() const { return m_productName; }
    [[nodiscard]] const SecretServiceBounds &bounds() const { return m_bounds; }

    /// The object path at which the query's item was read the last time; empty when there was none. Only a guess: the
    /// store is searched all the same.
    [[nodiscard]] QByteArray lastPlace(const KeyStoreQuery &query) const;
    void setLastPlace(const KeyStoreQuery &query, const QByteArray &path);

    void add(SecretServiceConversation &conversation);
    void remove(SecretServiceConversation &conversation);
    /// Ends what runs, and whatever would begin after this.
    void close();
    [[nodiscard]] bool isClosed() const { return m_isClosed; }

private:
    [[nodiscard]] QByteArray ownerOf(SecretService *service) const;
    void forget();

    QString m_productName;
    SecretServiceBounds m_bounds;
    bool m_isClosed = false;
    const SecretLibrary *m_library = nullptr; ///< once something was reached
    Reached m_reached;
    QByteArray m_owner;                                             ///< of the store's name at that time
    std::map<std::pair<QString, QString>, QByteArray> m_lastPlaces; ///< by service and account
    std::set<SecretServiceConversation *> m_conversations;
};

} // namespace orvesa
