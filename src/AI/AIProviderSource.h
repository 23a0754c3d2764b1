#pragma once

// Where whoever runs tasks gets its services from. Main thread.

#include "AI/AIProvider.h"

#include <memory>

namespace orvesa {

class AIProviderSource {
public:
    virtual ~AIProviderSource() = default;

    /// A fresh provider on every call; never fails.
    [[nodiscard]] virtual std::unique_ptr<AIProvider> provider(AIProviderType type) const = 0;

    /// Opens the connection to the service ahead of a request, so that the request need not wait for it. Sends nothing
    /// but the connection's own handshake.
    virtual void preconnect(AIProviderType type) const = 0;
};

} // namespace orvesa
