#pragma once

// The catalogue of language-model services. Value type, any thread.

#include "Core/RawValue.h"

#include <QStringList>
#include <QUrl>

namespace orvesa {

enum class AIProviderType { openAI, gemini, anthropic, xAI };

template <>
struct RawValueTable<AIProviderType> {
    static constexpr std::array<RawValueRow<AIProviderType>, 4> rows{{
        {AIProviderType::openAI, "openAI"},
        {AIProviderType::gemini, "gemini"},
        {AIProviderType::anthropic, "anthropic"},
        {AIProviderType::xAI, "xAI"},
    }};
};

/// Shown in every list; not localized.
[[nodiscard]] QString displayName(AIProviderType type);
/// The account name under which the service's API key is kept.
[[nodiscard]] QString keychainAccount(AIProviderType type);
/// Suggestions for the model, the default one first. Any other model identifier may be used as well.
[[nodiscard]] QStringList selectableModels(AIProviderType type);
[[nodiscard]] QString defaultModel(AIProviderType type);
/// The service's own page where a user creates an API key.
[[nodiscard]] QUrl apiKeyURL(AIProviderType type);

} // namespace orvesa
