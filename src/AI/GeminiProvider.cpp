#include "AI/GeminiProvider.h"

#include "AI/APIHTTPClient.h"
#include "AI/APIKeyRequirement.h"
#include "AI/JSONAnswer.h"
#include "Models/AppError.h"
#include "Models/Text.h"
#include "Platform/SecretBuffer.h"

#include <utility>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

/// The key travels here and never in the address, which ends up in logs.
[[nodiscard]] APIHTTPClient::Headers headersWithKey(const QString &key)
{
    APIHTTPClient::Headers headers;
    headers.emplace_back("x-goog-api-key", key.toUtf8());
    return headers;
}

[[nodiscard]] QString joinedTexts(const JSONAnswer &parts)
{
    QString joined;
    for (const JSONAnswer &part : requiredArray(parts)) {
        joined += optionalString(part, "text").value_or(QString());
    }
    return joined;
}

/// Every level may be missing; what is there has to have the right shape, in every candidate.
[[nodiscard]] QString candidateText(const JSONAnswer &candidate)
{
    const JSONAnswer *content = optionalMember(candidate, "content");
    const JSONAnswer *parts = content == nullptr ? nullptr : optionalMember(*content, "parts");
    return parts == nullptr ? QString() : joinedTexts(*parts);
}

} // namespace

GeminiProvider::GeminiProvider(const KeychainService &keychain, APIHTTPClient &client, ServiceAddresses addresses)
    : m_keychain(keychain), m_client(client), m_addresses(std::move(addresses))
{
}

QByteArray GeminiProvider::requestBody(const AIProviderConfig &config, const QString &prompt)
{
    nlohmann::ordered_json part;
    part["text"] = jsonText(prompt);
    nlohmann::ordered_json content;
    content["parts"].push_back(std::move(part));
    nlohmann::ordered_json body;
    body["contents"].push_back(std::move(content));
    if (config.model.startsWith("gemini-3"_L1)) {
        body["generationConfig"]["thinkingConfig"]["thinkingLevel"] = config.thinkingEnabled ? "high" : "minimal";
    } else if (!config.thinkingEnabled) {
        body["generationConfig"]["thinkingConfig"]["thinkingBudget"] = 0;
    }
    return encodedRequest(body);
}

QString GeminiProvider::answerText(const QByteArray &body)
{
    const JSONAnswer answer = decodedAnswer(body);
    std::optional<QString> first;
    if (const JSONAnswer *candidates = optionalMember(answer, "candidates")) {
        for (const JSONAnswer &candidate : requiredArray(*candidates)) {
            QString text = candidateText(candidate);
            if (!first) {
                first = std::move(text);
            }
        }
    }
    const QString joined = first.value_or(QString());
    const QStringView trimmed = trimmedWhitespaceAndNewlines(joined);
    if (trimmed.isEmpty()) {
        throw AppError(AppError::Kind::invalidAPIResponse);
    }
    return trimmed.toString();
}

QCoro::Task<QString> GeminiProvider::generate(QString text, AITask task, AIProviderConfig config,
                                              std::stop_token stop) const
{
    QString key = co_await requireAPIKey(m_keychain, providerType());
    const SecretClearing clearing(key);
    const QString prompt = m_promptService.prompt(task, text);
    const QString models = m_addresses.base(providerType()) + u"/v1beta/models/"_s;
    const QUrl url = serviceURL(models + config.model + u":generateContent"_s);
    const QByteArray body = requestBody(config, prompt);
    const QByteArray answer = co_await m_client.postJSON(url, headersWithKey(key), body, stop);
    co_return answerText(answer);
}

QCoro::Task<void> GeminiProvider::validateAPIKey(QString key, std::stop_token stop) const
{
    const QUrl url = serviceURL(m_addresses.base(providerType()) + u"/v1beta/models"_s);
    co_await m_client.get(url, headersWithKey(key), stop);
}

} // namespace orvesa
