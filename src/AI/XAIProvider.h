#pragma once

// xAI, over the chat-completions protocol. The thinking switch has no meaning here.
// Main thread; immutable; key store and client must outlive it.

#include "AI/AIProvider.h"
#include "AI/PromptTemplateService.h"
#include "AI/ServiceAddresses.h"

namespace orvesa {

class APIHTTPClient;
class KeychainService;

class XAIProvider final : public AIProvider {
public:
    XAIProvider(const KeychainService &keychain, APIHTTPClient &client, ServiceAddresses addresses);

    [[nodiscard]] AIProviderType providerType() const override { return AIProviderType::xAI; }
    [[nodiscard]] QCoro::Task<QString> generate(QString text, AITask task, AIProviderConfig config,
                                                std::stop_token stop = {}) const override;
    [[nodiscard]] QCoro::Task<void> validateAPIKey(QString key, std::stop_token stop = {}) const override;

private:
    const KeychainService &m_keychain;
    APIHTTPClient &m_client;
    ServiceAddresses m_addresses;
    PromptTemplateService m_promptService;
};

} // namespace orvesa
