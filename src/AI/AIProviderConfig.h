#pragma once

// What one request needs to know of the settings; built afresh for every request. Value type, any thread.

#include "AI/AIProviderType.h"

#include <QString>

namespace orvesa {

struct AIProviderConfig {
    AIProviderType providerType = AIProviderType::gemini;
    QString model;
    QString targetLanguage; ///< English name of the language; no provider reads it
    bool thinkingEnabled = false;

    bool operator==(const AIProviderConfig &) const = default;
};

} // namespace orvesa
