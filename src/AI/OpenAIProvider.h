#pragma once

// OpenAI, over the chat-completions protocol.
// Main thread; immutable; key store and client must outlive it.

#include "AI/ChatCompletionsProvider.h"

namespace orvesa {

class OpenAIProvider final : public ChatCompletionsProvider {
public:
    OpenAIProvider(const KeychainService &keychain, APIHTTPClient &client, ServiceAddresses addresses);

    [[nodiscard]] AIProviderType providerType() const override { return AIProviderType::openAI; }
};

} // namespace orvesa
