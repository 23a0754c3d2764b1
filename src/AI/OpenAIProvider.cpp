#include "AI/OpenAIProvider.h"

#include <utility>

namespace orvesa {

OpenAIProvider::OpenAIProvider(const KeychainService &keychain, APIHTTPClient &client, ServiceAddresses addresses)
    : ChatCompletionsProvider(keychain, client, std::move(addresses))
{
}

} // namespace orvesa
