#include "AI/AIProviderFactory.h"

#include "AI/AnthropicProvider.h"
#include "AI/APIHTTPClient.h"
#include "AI/GeminiProvider.h"
#include "AI/OpenAIProvider.h"
#include "AI/XAIProvider.h"
#include "Models/AppError.h"

#include <utility>

namespace orvesa {

AIProviderFactory::AIProviderFactory(KeychainService &keychain, APIHTTPClient &client, ServiceAddresses addresses)
    : m_keychain(keychain), m_client(client), m_addresses(std::move(addresses))
{
}

std::unique_ptr<AIProvider> AIProviderFactory::provider(AIProviderType type) const
{
    switch (type) {
    case AIProviderType::openAI:
        return std::make_unique<OpenAIProvider>(m_keychain, m_client, m_addresses);
    case AIProviderType::gemini:
        return std::make_unique<GeminiProvider>(m_keychain, m_client, m_addresses);
    case AIProviderType::anthropic:
        return std::make_unique<AnthropicProvider>(m_keychain, m_client, m_addresses);
    case AIProviderType::xAI:
        return std::make_unique<XAIProvider>(m_keychain, m_client, m_addresses);
    }
    Q_UNREACHABLE();
}

void AIProviderFactory::preconnect(AIProviderType type) const
{
    try {
        m_client.preconnect(QUrl(m_addresses.base(type), QUrl::StrictMode));
    } catch (const AppError &) {
        // An override that is not allowed is reported by the request, where somebody is there to read it.
        return;
    }
}

} // namespace orvesa
