#include "service/ServiceAnswers.h"

#include <nlohmann/json.hpp>

#include <QStringView>

namespace orvesa::service {

using namespace Qt::StringLiterals;
using nlohmann::ordered_json;

namespace {

[[nodiscard]] QByteArray dumped(const ordered_json &json)
{
    return QByteArray::fromStdString(json.dump());
}

[[nodiscard]] std::string utf8(const QString &text)
{
    return text.toUtf8().toStdString();
}

} // namespace

std::optional<ServiceProtocol> protocolOf(const ServiceRequest &request)
{
    const QByteArray path = request.path();
    if (path.startsWith("/v1beta/models")) {
        return ServiceProtocol::generateContent;
    }
    if (path.endsWith("/messages") || request.header("anthropic-version")) {
        return ServiceProtocol::messages;
    }
    if (path.endsWith("/chat/completions") || path.endsWith("/models")) {
        return ServiceProtocol::chatCompletions;
    }
    return std::nullopt;
}

bool isModelList(const ServiceRequest &request)
{
    return request.method == "GET" && request.path().endsWith("/models");
}

bool hasKey(const ServiceRequest &request, ServiceProtocol protocol)
{
    switch (protocol) {
    case ServiceProtocol::chatCompletions:
        return request.header("Authorization").value_or("").startsWith("Bearer ");
    case ServiceProtocol::messages:
        return !request.header("x-api-key").value_or("").isEmpty();
    case ServiceProtocol::generateContent:
        return !request.header("x-goog-api-key").value_or("").isEmpty();
    }
    return false;
}

QByteArray chatCompletionAnswer(const QString &text)
{
    return dumped({
        {"id", "chatcmpl-7Qy1f3"},
        {"object", "chat.completion"},
        {"created", 1767225600},
        {"model", "stand-in"},
        {"choices", ordered_json::array({{
                        {"index", 0},
                        {"message",
                         {{"role", "assistant"},
                          {"content", utf8(text)},
                          {"refusal", nullptr},
                          {"annotations", ordered_json::array()}}},
                        {"logprobs", nullptr},
                        {"finish_reason", "stop"},
                    }})},
        {"usage", {{"prompt_tokens", 41}, {"completion_tokens", 17}, {"total_tokens", 58}}},
        {"system_fingerprint", "fp_44709d6fcb"},
    });
}

QByteArray messagesAnswer(const QString &text)
{
    return dumped({
        {"id", "msg_01XFDUDYJgAACzvnptvVoYEL"},
        {"type", "message"},
        {"role", "assistant"},
        {"model", "stand-in"},
        {"content", ordered_json::array({{{"type", "text"}, {"text", utf8(text)}, {"citations", nullptr}}})},
        {"stop_reason", "end_turn"},
        {"stop_sequence", nullptr},
        {"usage", {{"input_tokens", 41}, {"output_tokens", 17}, {"service_tier", "standard"}}},
    });
}

QByteArray generateContentAnswer(const QString &text)
{
    return dumped({
        {"candidates", ordered_json::array({{
                           {"content", {{"parts", ordered_json::array({{{"text", utf8(text)}}})}, {"role", "model"}}},
                           {"finishReason", "STOP"},
                           {"index", 0},
                           {"safetyRatings", ordered_json::array()},
                       }})},
        {"usageMetadata", {{"promptTokenCount", 41}, {"candidatesTokenCount", 17}, {"totalTokenCount", 58}}},
        {"modelVersion", "stand-in"},
        {"responseId", "8zJGacfQJ6Kn"},
    });
}

QByteArray answerBody(ServiceProtocol protocol, const QString &text)
{
    switch (protocol) {
    case ServiceProtocol::chatCompletions:
        return chatCompletionAnswer(text);
    case ServiceProtocol::messages:
        return messagesAnswer(text);
    case ServiceProtocol::generateContent:
        return generateContentAnswer(text);
    }
    return {};
}

QByteArray modelList(ServiceProtocol protocol)
{
    switch (protocol) {
    case ServiceProtocol::chatCompletions:
        return dumped(
            {{"object", "list"},
             {"data", ordered_json::array({{{"id", "stand-in"}, {"object", "model"}, {"owned_by", "system"}}})}});
    case ServiceProtocol::messages:
        return dumped(
            {{"data", ordered_json::array({{{"type", "model"}, {"id", "stand-in"}, {"display_name", "Stand-in"}}})},
             {"has_more", false}});
    case ServiceProtocol::generateContent:
        return dumped({{"models", ordered_json::array({{{"name", "models/stand-in"}, {"displayName", "Stand-in"}}})}});
    }
    return {};
}

QByteArray errorBody(ServiceProtocol protocol, const QString &message)
{
    switch (protocol) {
    case ServiceProtocol::chatCompletions:
        return dumped({{"error", {{"message", utf8(message)}, {"type", "invalid_request_error"}, {"code", nullptr}}}});
    case ServiceProtocol::messages:
        return dumped({{"type", "error"}, {"error", {{"type", "authentication_error"}, {"message", utf8(message)}}}});
    case ServiceProtocol::generateContent:
        return dumped({{"error", {{"code", 401}, {"message", utf8(message)}, {"status", "UNAUTHENTICATED"}}}});
    }
    return {};
}

std::optional<QString> promptOf(const ServiceRequest &request)
{
    const auto protocol = protocolOf(request);
    const auto json = ordered_json::parse(request.body.constBegin(), request.body.constEnd(), nullptr, false);
    const bool isGemini = protocol == ServiceProtocol::generateContent;
    const ordered_json::json_pointer place(isGemini ? "/contents/0/parts/0/text" : "/messages/0/content");
    if (!protocol || json.is_discarded() || !json.contains(place) || !json.at(place).is_string()) {
        return std::nullopt;
    }
    return QString::fromStdString(json.at(place).get<std::string>());
}

QString textOfPrompt(const QString &prompt)
{
    const QStringView label = u"\nText:\n";
    const qsizetype place = prompt.indexOf(label);
    return place < 0 ? prompt : prompt.sliced(place + label.size());
}

ServiceResponse protocolResponse(const ServiceRequest &request, const QString &text)
{
    const auto protocol = protocolOf(request);
    if (!protocol) {
        return ServiceResponse::text(404, "no such path");
    }
    if (!hasKey(request, *protocol)) {
        return ServiceResponse::text(401, errorBody(*protocol, u"The key is missing."_s), "application/json");
    }
    if (isModelList(request)) {
        return ServiceResponse::json(modelList(*protocol));
    }
    if (!promptOf(request)) {
        return ServiceResponse::text(400, errorBody(*protocol, u"The request holds no message."_s), "application/json");
    }
    return ServiceResponse::json(answerBody(*protocol, text));
}

} // namespace orvesa::service
