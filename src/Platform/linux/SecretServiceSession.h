#pragma once

// What the operations of one key store share: the bounds, where items were found, and a way to end them all when the
// store goes. No secret is in it.
//
// Main thread. Held by the key store and by every running operation, which may outlive it.

#include "Platform/linux/SecretServiceKeyStore.h"

#include <map>
#include <set>
#include <utility>

namespace orvesa {

class SecretServiceConversation;

class SecretServiceSession final {
public:
    SecretServiceSession(QString productName, SecretServiceBounds bounds);

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
    QString m_productName;
    SecretServiceBounds m_bounds;
    bool m_isClosed = false;
    std::map<std::pair<QString, QString>, QByteArray> m_lastPlaces; ///< by service and account
    std::set<SecretServiceConversation *> m_conversations;
};

} // namespace orvesa
