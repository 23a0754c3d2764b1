// The address that a service redirects to. Whatever it is, the key stays with its origin, and encryption is kept.

#include "AI/HTTPRequest.h"
#include "AI/LoopbackHost.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

using namespace Qt::StringLiterals;

namespace {

void check(const QUrl &from, const QByteArray &location)
{
    const orvesa::HTTPRequest request{from, {{"x-api-key", "key"}}, QByteArray("{}")};
    const auto next = orvesa::redirectedRequest(request, 307, location);
    if (!next) {
        return;
    }
    const bool isEncrypted = next->url.scheme() == "https"_L1;
    const bool isLocal = from.scheme() == "http"_L1 && orvesa::hasLoopbackHost(next->url);
    const bool isSameHost = next->url.host() == from.host() && next->url.scheme() == from.scheme();
    if (!(isEncrypted || isLocal) || !next->url.userInfo().isEmpty() || (!isSameHost && !next->headers.empty())) {
        std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray location(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    check(QUrl(u"https://api.example/v1/messages?a=b"_s), location);
    check(QUrl(u"http://127.0.0.1:8080/v1/messages"_s), location);
    return 0;
}
