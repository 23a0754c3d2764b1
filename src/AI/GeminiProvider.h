#pragma once

// Google Gemini, over the generate-content protocol, version v1beta.
// Main thread; immutable; key store and client must outlive it.

#include "AI/AIProvider.h"
#include "AI/PromptTemplateService.h"
#include "AI/ServiceAddresses.h"

namespace orvesa {

class APIHTTPClient;
class KeychainService;

class GeminiProvider final : public AIProvider {
public:
    GeminiProvider(const KeychainService &keychain, APIHTTPClient &client, ServiceAddresses addresses);

    [[nodiscard]] AIProviderType providerType() const override { return AIProviderType::gemini; }
    [[nodiscard]] QCoro::Task<QString> generate(QString text, AITask task, AIProviderConfig config,
                                                std::stop_token stop = {}) const override;
    [[nodiscard]] QCoro::Task<void> validateAPIKey(QString key, std::stop_token stop = {}) const override;

    /// One content with one part; the thinking switch as a level for models of the third generation, as a budget of
    /// zero for older ones, which decide for themselves when thinking is on.
    [[nodiscard]] static QByteArray requestBody(const AIProviderConfig &config, const QString &prompt);
    /// The first candidate's texts joined, without outer blanks. Throws AppError invalidAPIResponse.
    [[nodiscard]] static QString answerText(const QByteArray &body);

private:
    const KeychainService &m_keychain;
    APIHTTPClient &m_client;
    ServiceAddresses m_addresses;
    PromptTemplateService m_promptService;
};

} // namespace orvesa
