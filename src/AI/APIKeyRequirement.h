#pragma once

// The look-up that every provider makes before it sends anything. Main thread.

#include "AI/AIProviderType.h"

#include <QCoroTask>

#include <QString>

namespace orvesa {

class KeychainService;

/// The key stored for the service, exactly as stored. Throws AppError missingAPIKey when there is none or only blanks.
/// The key store must outlive the operation.
[[nodiscard]] QCoro::Task<QString> requireAPIKey(const KeychainService &keychain, AIProviderType type);

} // namespace orvesa
