#include "AI/XAIProvider.h"

#include <utility>

namespace orvesa {

XAIProvider::XAIProvider(const KeychainService &keychain, APIHTTPClient &client, ServiceAddresses addresses)
    : ChatCompletionsProvider(keychain, client, std::move(addresses))
{
}

} // namespace orvesa
