#pragma once

// What the operations of one key store share: the bounds, and a way to end them all when the store goes.
//
// Main thread. Held by the key store and by every running operation, which may outlive it.

#include "Platform/linux/SecretServiceKeyStore.h"

#include <set>

namespace orvesa {

class SecretServiceConversation;

class SecretServiceSession final {
public:
    SecretServiceSession(QString productName, SecretServiceBounds bounds);

    [[nodiscard]] const QString &productName() const { return m_productName; }
    [[nodiscard]] const SecretServiceBounds &bounds() const { return m_bounds; }

    void add(SecretServiceConversation &conversation);
    void remove(SecretServiceConversation &conversation);
    /// Ends what runs, and whatever would begin after this.
    void close();
    [[nodiscard]] bool isClosed() const { return m_isClosed; }

private:
    QString m_productName;
    SecretServiceBounds m_bounds;
    bool m_isClosed = false;
    std::set<SecretServiceConversation *> m_conversations;
};

} // namespace orvesa
