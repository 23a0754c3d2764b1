#include "AI/ChatCompletionsProvider.h"

#include "AI/APIKeyRequirement.h"
#include "AI/OpenAIChatAPI.h"
#include "Platform/SecretBuffer.h"

#include <utility>

namespace orvesa {

ChatCompletionsProvider::ChatCompletionsProvider(const KeychainService &keychain, APIHTTPClient &client,
                                                 ServiceAddresses addresses)
    : m_keychain(keychain), m_client(client), m_addresses(std::move(addresses))
{
}

QCoro::Task<QString> ChatCompletionsProvider::generate(QString text, AITask task, AIProviderConfig config,
                                                       std::stop_token stop) const
{
    QString key = co_await requireAPIKey(m_keychain, providerType());
    const SecretClearing clearing(key);
    const QString prompt = m_promptService.prompt(task, text);
    co_return co_await OpenAIChatAPI::generate(m_client, m_addresses.base(providerType()), key, config.model, prompt,
                                               stop);
}

QCoro::Task<void> ChatCompletionsProvider::validateAPIKey(QString key, std::stop_token stop) const
{
    co_await OpenAIChatAPI::validate(m_client, m_addresses.base(providerType()), key, stop);
}

} // namespace orvesa
