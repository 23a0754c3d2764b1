#pragma once

// The wire formats of the four language-model services, seen from the service's side: success answers with the fields
// that real ones carry, model lists, and the prompt inside a request. Pure functions, any thread.

#include "service/ServiceRequest.h"
#include "service/ServiceResponse.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace orvesa::service {

enum class ServiceProtocol { chatCompletions, messages, generateContent };

/// The protocol that a request speaks, by its path and, where two share one, its headers.
[[nodiscard]] std::optional<ServiceProtocol> protocolOf(const ServiceRequest &request);
/// Whether the request reads the list of models.
[[nodiscard]] bool isModelList(const ServiceRequest &request);
/// Whether the request carries a key in the place where the protocol wants it.
[[nodiscard]] bool hasKey(const ServiceRequest &request, ServiceProtocol protocol);

[[nodiscard]] QByteArray chatCompletionAnswer(const QString &text);
[[nodiscard]] QByteArray messagesAnswer(const QString &text);
[[nodiscard]] QByteArray generateContentAnswer(const QString &text);
[[nodiscard]] QByteArray answerBody(ServiceProtocol protocol, const QString &text);
[[nodiscard]] QByteArray modelList(ServiceProtocol protocol);
/// An error body in the protocol's own shape.
[[nodiscard]] QByteArray errorBody(ServiceProtocol protocol, const QString &message);

/// The one user message of a request; absent when the body is not such a request.
[[nodiscard]] std::optional<QString> promptOf(const ServiceRequest &request);
/// What follows the label "Text:" on a line of its own, or the whole prompt.
[[nodiscard]] QString textOfPrompt(const QString &prompt);

/// The complete answer of a service in good order: the model list, the text, or the error that fits.
[[nodiscard]] ServiceResponse protocolResponse(const ServiceRequest &request, const QString &text);

} // namespace orvesa::service
