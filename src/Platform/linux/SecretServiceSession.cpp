#include "Platform/linux/SecretServiceSession.h"

#include "Platform/linux/SecretServiceOperation.h"

#include <utility>

namespace orvesa {

SecretServiceSession::SecretServiceSession(QString productName, SecretServiceBounds bounds)
    : m_productName(std::move(productName)), m_bounds(bounds)
{
}

void SecretServiceSession::add(SecretServiceOperation &operation)
{
    m_operations.insert(&operation);
}

void SecretServiceSession::remove(SecretServiceOperation &operation)
{
    m_operations.erase(&operation);
}

void SecretServiceSession::close()
{
    m_isClosed = true;
    while (!m_operations.empty()) {
        // Taken out first: ending it resumes its job, which removes it or begins nothing new.
        SecretServiceOperation *const operation = *m_operations.begin();
        m_operations.erase(m_operations.begin());
        operation->abandon(KeyStoreStatus::userCanceled);
    }
}

} // namespace orvesa
