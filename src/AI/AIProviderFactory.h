#pragma once

// Makes the provider of a service, with its collaborators. Main thread; cheap, called once per request.

#include "AI/AIProviderSource.h"
#include "AI/ServiceAddresses.h"

#include <memory>

namespace orvesa {

class APIHTTPClient;
class KeychainService;

class AIProviderFactory final : public AIProviderSource {
public:
    /// Both must outlive the factory and every provider it made.
    AIProviderFactory(KeychainService &keychain, APIHTTPClient &client, ServiceAddresses addresses);

    [[nodiscard]] std::unique_ptr<AIProvider> provider(AIProviderType type) const override;
    void preconnect(AIProviderType type) const override;

private:
    KeychainService &m_keychain;
    APIHTTPClient &m_client;
    ServiceAddresses m_addresses;
};

} // namespace orvesa
