#include "AI/AnthropicProvider.h"

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

constexpr int greatestAnswerTokens = 8192;

[[nodiscard]] APIHTTPClient::Headers headersWithKey(const QString &key)
{
    APIHTTPClient::Headers headers;
    headers.emplace_back("x-api-key", key.toUtf8());
    headers.emplace_back("anthropic-version", "2023-06-01");
    return headers;
}

} // namespace

AnthropicProvider::AnthropicProvider(const KeychainService &keychain, APIHTTPClient &client, ServiceAddresses addresses)
    : m_keychain(keychain), m_client(client), m_addresses(std::move(addresses))
{
}

QByteArray AnthropicProvider::requestBody(const AIProviderConfig &config, const QString &prompt)
{
    nlohmann::ordered_json message;
    message["role"] = "user";
    message["content"] = jsonText(prompt);
    nlohmann::ordered_json body;
    body["model"] = jsonText(config.model);
    body["max_tokens"] = greatestAnswerTokens;
    body["messages"].push_back(std::move(message));
    body["thinking"]["type"] = config.thinkingEnabled ? "adaptive" : "disabled";
    return encodedRequest(body);
}

QString AnthropicProvider::answerText(const QByteArray &body)
{
    const JSONAnswer answer = decodedAnswer(body);
    QString joined;
    for (const JSONAnswer &block : requiredArray(requiredMember(answer, "content"))) {
        const QString type = requiredString(requiredMember(block, "type"));
        const std::optional<QString> text = optionalString(block, "text");
        if (type == "text"_L1 && text) {
            joined += *text;
        }
    }
    if (optionalString(answer, "stop_reason") == u"refusal"_s) {
        throw AppError::apiRequestFailed(u"The model declined to process this text."_s);
    }
    const QStringView trimmed = trimmedWhitespaceAndNewlines(joined);
    if (trimmed.isEmpty()) {
        throw AppError(AppError::Kind::invalidAPIResponse);
    }
    return trimmed.toString();
}

QCoro::Task<QString> AnthropicProvider::generate(QString text, AITask task, AIProviderConfig config,
                                                 std::stop_token stop) const
{
    QString key = co_await requireAPIKey(m_keychain, providerType());
    const SecretClearing clearing(key);
    const QString prompt = m_promptService.prompt(task, text);
    const QUrl url = serviceURL(m_addresses.base(providerType()) + u"/v1/messages"_s);
    const QByteArray body = requestBody(config, prompt);
    const QByteArray answer = co_await m_client.postJSON(url, headersWithKey(key), body, stop);
    co_return answerText(answer);
}

QCoro::Task<void> AnthropicProvider::validateAPIKey(QString key, std::stop_token stop) const
{
    const QUrl url = serviceURL(m_addresses.base(providerType()) + u"/v1/models"_s);
    co_await m_client.get(url, headersWithKey(key), stop);
}

} // namespace orvesa
