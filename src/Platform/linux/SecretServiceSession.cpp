#include "Platform/linux/SecretServiceSession.h"

#include "Platform/linux/SecretServiceConversation.h"

#include <utility>

namespace orvesa {

SecretServiceSession::SecretServiceSession(QString productName, SecretServiceBounds bounds)
    : m_productName(std::move(productName)), m_bounds(bounds)
{
}

SecretServiceSession::~SecretServiceSession()
{
    forget();
}

QByteArray SecretServiceSession::ownerOf(SecretService *service) const
{
    gchar *const name = m_library->proxyNameOwner(reinterpret_cast<GDBusProxy *>(service));
    const QByteArray owner(name);
    g_free(name);
    return owner;
}

SecretServiceSession::Reached SecretServiceSession::reached() const
{
    const bool isThere = m_reached.service != nullptr && m_library->busIsClosed(m_reached.bus) == FALSE &&
                         !m_owner.isEmpty() && ownerOf(m_reached.service) == m_owner;
    return isThere ? m_reached : Reached();
}

void SecretServiceSession::setReached(const SecretLibrary &library, Reached store)
{
    forget();
    m_library = &library;
    library.objectRef(store.bus);
    library.objectRef(store.service);
    m_reached = store;
    m_owner = ownerOf(store.service);
}

void SecretServiceSession::forget()
{
    if (m_reached.service != nullptr) {
        m_library->objectUnref(m_reached.service);
        m_library->objectUnref(m_reached.bus);
        m_reached = {};
    }
}

QByteArray SecretServiceSession::lastPlace(const KeyStoreQuery &query) const
{
    const auto found = m_lastPlaces.find({query.service, query.account});
    return found == m_lastPlaces.end() ? QByteArray() : found->second;
}

void SecretServiceSession::setLastPlace(const KeyStoreQuery &query, const QByteArray &path)
{
    m_lastPlaces.insert_or_assign({query.service, query.account}, path);
}

void SecretServiceSession::add(SecretServiceConversation &conversation)
{
    m_conversations.insert(&conversation);
}

void SecretServiceSession::remove(SecretServiceConversation &conversation)
{
    m_conversations.erase(&conversation);
}

void SecretServiceSession::close()
{
    m_isClosed = true;
    while (!m_conversations.empty()) {
        // Taken out first: ending it resumes its job, which removes it or begins nothing new.
        SecretServiceConversation *const conversation = *m_conversations.begin();
        m_conversations.erase(m_conversations.begin());
        conversation->abandon(KeyStoreStatus::userCanceled);
    }
}

} // namespace orvesa
