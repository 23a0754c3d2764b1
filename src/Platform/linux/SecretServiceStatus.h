#pragma once

// What an error of libsecret or of the bus below it means in the key store's numbering. Main thread.

#include "Platform/KeyStorePort.h"
#include "Platform/linux/SecretLibrary.h"

namespace orvesa::SecretServiceStatus {

/// Takes the error over. Without one, somebody refused without giving a reason.
[[nodiscard]] qint32 ofError(const SecretLibrary &library, GError *error);

} // namespace orvesa::SecretServiceStatus
