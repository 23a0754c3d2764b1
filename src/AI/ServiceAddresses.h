#pragma once

// Where the services are: their public addresses, or what the environment puts in their place.
//
// OPENAI_BASE_URL and XAI_BASE_URL replace the whole base address ("https://host/v1"); ANTHROPIC_BASE_URL and
// GOOGLE_GEMINI_BASE_URL replace scheme, host and port. These are the variables that the services' own tools read. An
// override must be https, or http to a loopback address; it is checked when a request is about to be made, so that the
// failure reaches the user. A trailing slash makes no difference. Value type, any thread.

#include "AI/AIProviderType.h"

#include <QProcessEnvironment>
#include <QString>

#include <map>

namespace orvesa {

class ServiceAddresses final {
public:
    /// The public addresses.
    ServiceAddresses() = default;
    /// The public addresses with the environment's overrides.
    explicit ServiceAddresses(const QProcessEnvironment &environment);

    /// The base address without a trailing slash. For OpenAI and xAI it ends in the version path, for the others it is
    /// scheme and host. Throws AppError::apiRequestFailed that names the variable when an override is not allowed.
    [[nodiscard]] QString base(AIProviderType type) const;

private:
    std::map<AIProviderType, QString> m_overrides;
};

} // namespace orvesa
