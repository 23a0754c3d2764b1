#pragma once

// xAI, over the chat-completions protocol.
// Main thread; immutable; key store and client must outlive it.

#include "AI/ChatCompletionsProvider.h"

namespace orvesa {

class XAIProvider final : public ChatCompletionsProvider {
public:
    XAIProvider(const KeychainService &keychain, APIHTTPClient &client, ServiceAddresses addresses);

    [[nodiscard]] AIProviderType providerType() const override { return AIProviderType::xAI; }
};

} // namespace orvesa
