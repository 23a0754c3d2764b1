#include "Core/KeychainError.h"

namespace orvesa {

using namespace Qt::StringLiterals;

KeychainError::KeychainError(qint32 unexpectedStatus) : m_status(unexpectedStatus) {}

QString KeychainError::errorDescription() const
{
    return u"Keychain error (status: "_s + QString::number(m_status) + u')';
}

} // namespace orvesa
