#pragma once

// The chat-completions protocol, which OpenAI and xAI share. No state; main thread. The client must outlive an
// operation.

#include <QByteArray>
#include <QCoroTask>
#include <QString>

#include <stop_token>

namespace orvesa {

class APIHTTPClient;

namespace OpenAIChatAPI {

/// One user message for the model and nothing else: no temperature, no limit, no reasoning setting.
[[nodiscard]] QByteArray requestBody(const QString &model, const QString &prompt);
/// The first choice's text without outer blanks. Blanks alone are an answer (an empty one), an empty text is none.
/// Throws AppError invalidAPIResponse.
[[nodiscard]] QString answerText(const QByteArray &body);

[[nodiscard]] QCoro::Task<QString> generate(APIHTTPClient &client, QString baseURL, QString apiKey, QString model,
                                            QString prompt, std::stop_token stop);
[[nodiscard]] QCoro::Task<void> validate(APIHTTPClient &client, QString baseURL, QString apiKey, std::stop_token stop);

} // namespace OpenAIChatAPI

} // namespace orvesa
