#include "AI/APIKeyRequirement.h"

#include "Core/KeychainService.h"
#include "Models/AppError.h"
#include "Models/Text.h"

namespace orvesa {

QCoro::Task<QString> requireAPIKey(const KeychainService &keychain, AIProviderType type)
{
    const std::optional<QString> key = co_await keychain.get(keychainAccount(type));
    // Only the test trims: a key with blanks around it is the user's to send.
    if (!key || isBlank(*key)) {
        throw AppError(AppError::Kind::missingAPIKey);
    }
    co_return *key;
}

} // namespace orvesa
