#include "AI/HTTPRequest.h"

#include "AI/LoopbackHost.h"

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

[[nodiscard]] bool isSameOrigin(const QUrl &left, const QUrl &right)
{
    const auto port = [](const QUrl &url) { return url.port(url.scheme() == "https"_L1 ? 443 : 80); };
    return left.scheme() == right.scheme() && left.host() == right.host() && port(left) == port(right);
}

} // namespace

bool isRedirect(int status)
{
    return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

std::optional<HTTPRequest> redirectedRequest(const HTTPRequest &request, int status, const QByteArray &location)
{
    if (location.isEmpty()) {
        return std::nullopt;
    }
    QUrl target = request.url.resolved(QUrl::fromEncoded(location));
    // Credentials inside an address are the server's invention; they would be sent as an Authorization header.
    target.setUserInfo({});
    const bool isEncrypted = target.scheme() == "https"_L1;
    const bool isLocal = target.scheme() == "http"_L1 && request.url.scheme() == "http"_L1 && hasLoopbackHost(target);
    if (!target.isValid() || target.host().isEmpty() || !(isEncrypted || isLocal)) {
        return std::nullopt;
    }
    HTTPRequest next = request;
    next.url = target;
    if (!isSameOrigin(target, request.url)) {
        next.headers.clear();
    }
    if (status != 307 && status != 308) {
        next.body.reset();
        std::erase_if(next.headers, [](const auto &header) {
            return header.first.compare("Content-Type", Qt::CaseInsensitive) == 0;
        });
    }
    return next;
}

} // namespace orvesa
