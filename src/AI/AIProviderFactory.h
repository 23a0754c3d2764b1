#pragma once

// Makes the provider of a service, with its collaborators. Main thread; cheap, called once per request.

#include "AI/AIProvider.h"
#include "AI/ServiceAddresses.h"

#include <memory>

namespace orvesa {

class APIHTTPClient;
class KeychainService;

class AIProviderFactory final {
public:
    /// Both must outlive the factory and every provider it made.
    AIProviderFactory(KeychainService &keychain, APIHTTPClient &client, ServiceAddresses addresses);

    /// Never fails; a fresh provider on every call.
    [[nodiscard]] std::unique_ptr<AIProvider> provider(AIProviderType type) const;

    /// Opens the connection to the service ahead of a request, so that the request need not wait for it. Sends nothing
    /// but the connection's own handshake.
    void preconnect(AIProviderType type) const;

private:
    KeychainService &m_keychain;
    APIHTTPClient &m_client;
    ServiceAddresses m_addresses;
};

} // namespace orvesa
