#include "AI/AIProviderType.h"

#include <QtGlobal>

namespace orvesa {

using namespace Qt::StringLiterals;

QString displayName(AIProviderType type)
{
    switch (type) {
    case AIProviderType::openAI:
        return u"OpenAI"_s;
    case AIProviderType::gemini:
        return u"Gemini"_s;
    case AIProviderType::anthropic:
        return u"Claude (Anthropic)"_s;
    case AIProviderType::xAI:
        return u"Grok (xAI)"_s;
    }
    Q_UNREACHABLE();
}

QString keychainAccount(AIProviderType type)
{
    switch (type) {
    case AIProviderType::openAI:
        return u"openai_api_key"_s;
    case AIProviderType::gemini:
        return u"gemini_api_key"_s;
    case AIProviderType::anthropic:
        return u"anthropic_api_key"_s;
    case AIProviderType::xAI:
        return u"xai_api_key"_s;
    }
    Q_UNREACHABLE();
}

QStringList selectableModels(AIProviderType type)
{
    switch (type) {
    case AIProviderType::openAI:
        return {u"gpt-5.4-mini"_s, u"gpt-5.4-nano"_s, u"gpt-5.4"_s, u"gpt-5.5"_s};
    case AIProviderType::gemini:
        return {u"gemini-3.1-flash-lite"_s, u"gemini-3.5-flash"_s, u"gemini-2.5-flash"_s, u"gemini-2.5-pro"_s};
    case AIProviderType::anthropic:
        return {u"claude-sonnet-5"_s, u"claude-sonnet-4-6"_s, u"claude-haiku-4-5"_s, u"claude-opus-4-8"_s};
    case AIProviderType::xAI:
        return {u"grok-4.3"_s, u"grok-4.20-0309-non-reasoning"_s, u"grok-4"_s};
    }
    Q_UNREACHABLE();
}

QString defaultModel(AIProviderType type)
{
    return selectableModels(type).constFirst();
}

QUrl apiKeyURL(AIProviderType type)
{
    switch (type) {
    case AIProviderType::openAI:
        return QUrl(u"https://platform.openai.com/api-keys"_s);
    case AIProviderType::gemini:
        return QUrl(u"https://aistudio.google.com/app/apikey"_s);
    case AIProviderType::anthropic:
        return QUrl(u"https://console.anthropic.com/settings/keys"_s);
    case AIProviderType::xAI:
        return QUrl(u"https://console.x.ai/"_s);
    }
    Q_UNREACHABLE();
}

} // namespace orvesa
