#pragma once

// What the services have in common that speak the chat-completions protocol: they differ in their address and in the
// account of their key. The thinking switch has no meaning for them.
// Main thread; immutable; key store and client must outlive it.

#include "AI/AIProvider.h"
#include "AI/PromptTemplateService.h"
#include "AI/ServiceAddresses.h"

namespace orvesa {

class APIHTTPClient;
class KeychainService;

class ChatCompletionsProvider : public AIProvider {
public:
    [[nodiscard]] QCoro::Task<QString> generate(QString text, AITask task, AIProviderConfig config,
                                                std::stop_token stop = {}) const override;
    [[nodiscard]] QCoro::Task<void> validateAPIKey(QString key, std::stop_token stop = {}) const override;

protected:
    ChatCompletionsProvider(const KeychainService &keychain, APIHTTPClient &client, ServiceAddresses addresses);

private:
    const KeychainService &m_keychain;
    APIHTTPClient &m_client;
    ServiceAddresses m_addresses;
    PromptTemplateService m_promptService;
};

} // namespace orvesa
