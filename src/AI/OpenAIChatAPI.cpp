#include "AI/OpenAIChatAPI.h"

#include "AI/APIHTTPClient.h"
#include "AI/JSONAnswer.h"
#include "Models/AppError.h"
#include "Models/Text.h"

#include <utility>

namespace orvesa::OpenAIChatAPI {

using namespace Qt::StringLiterals;

namespace {

[[nodiscard]] APIHTTPClient::Headers authorization(const QString &apiKey)
{
    APIHTTPClient::Headers headers;
    headers.emplace_back("Authorization", "Bearer " + apiKey.toUtf8());
    return headers;
}

} // namespace

QByteArray requestBody(const QString &model, const QString &prompt)
{
    nlohmann::ordered_json message;
    message["role"] = "user";
    message["content"] = jsonText(prompt);
    nlohmann::ordered_json body;
    body["model"] = jsonText(model);
    body["messages"].push_back(std::move(message));
    return encodedRequest(body);
}

QString answerText(const QByteArray &body)
{
    const JSONAnswer answer = decodedAnswer(body);
    std::optional<QString> first;
    // Every choice has to have the right shape, although only the first one is read.
    for (const JSONAnswer &choice : requiredArray(requiredMember(answer, "choices"))) {
        const JSONAnswer &message = requiredMember(choice, "message");
        static_cast<void>(requiredString(requiredMember(message, "role")));
        QString content = requiredString(requiredMember(message, "content"));
        if (!first) {
            first = std::move(content);
        }
    }
    if (!first || first->isEmpty()) {
        throw AppError(AppError::Kind::invalidAPIResponse);
    }
    return trimmedWhitespaceAndNewlines(*first).toString();
}

QCoro::Task<QString> generate(APIHTTPClient &client, QString baseURL, QString apiKey, QString model, QString prompt,
                              std::stop_token stop)
{
    const QUrl url = serviceURL(baseURL + u"/chat/completions"_s);
    const QByteArray body = requestBody(model, prompt);
    const QByteArray answer = co_await client.postJSON(url, authorization(apiKey), body, stop);
    co_return answerText(answer);
}

QCoro::Task<void> validate(APIHTTPClient &client, QString baseURL, QString apiKey, std::stop_token stop)
{
    const QUrl url = serviceURL(baseURL + u"/models"_s);
    co_await client.get(url, authorization(apiKey), stop);
}

} // namespace orvesa::OpenAIChatAPI
