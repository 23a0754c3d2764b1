#include "Platform/linux/SecretServiceSession.h"

#include "Platform/linux/SecretServiceConversation.h"

#include <utility>

namespace orvesa {

SecretServiceSession::SecretServiceSession(QString productName, SecretServiceBounds bounds)
    : m_productName(std::move(productName)), m_bounds(bounds)
{
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
