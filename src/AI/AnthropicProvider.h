#pragma once

// Anthropic, over the messages protocol.
// Main thread; immutable; key store and client must outlive it.

#include "AI/AIProvider.h"
#include "AI/PromptTemplateService.h"
#include "AI/ServiceAddresses.h"

namespace orvesa {

class APIHTTPClient;
class KeychainService;

class AnthropicProvider final : public AIProvider {
public:
    AnthropicProvider(const KeychainService &keychain, APIHTTPClient &client, ServiceAddresses addresses);

    [[nodiscard]] AIProviderType providerType() const override { return AIProviderType::anthropic; }
    [[nodiscard]] QCoro::Task<QString> generate(QString text, AITask task, AIProviderConfig config,
                                                std::stop_token stop = {}) const override;
    [[nodiscard]] QCoro::Task<void> validateAPIKey(QString key, std::stop_token stop = {}) const override;

    /// One user message, at most 8192 tokens of answer, and the thinking switch as the protocol's thinking mode.
    [[nodiscard]] static QByteArray requestBody(const AIProviderConfig &config, const QString &prompt);
    /// The text blocks joined, without outer blanks. Throws AppError: apiRequestFailed for a refusal,
    /// invalidAPIResponse for another shape or when no text is left.
    [[nodiscard]] static QString answerText(const QByteArray &body);

private:
    const KeychainService &m_keychain;
    APIHTTPClient &m_client;
    ServiceAddresses m_addresses;
    PromptTemplateService m_promptService;
};

} // namespace orvesa
