#include "AI/ServiceReach.h"

#include "AI/NetworkRequest.h"
#include "AI/SystemProxies.h"

#include <QCoroNetworkReply>
#include <QCoroSignal>

#include <QElapsedTimer>
#include <QNetworkAccessManager>
#include <QNetworkReply>

#include <memory>

namespace orvesa {

namespace {

ServiceReach::Outcome outcomeOf(const QNetworkReply &reply, int status)
{
    using Outcome = ServiceReach::Outcome;
    if (status != 0) {
        return Outcome::answered;
    }
    switch (reply.error()) {
    case QNetworkReply::HostNotFoundError:
        return Outcome::nameNotFound;
    case QNetworkReply::ConnectionRefusedError:
        return Outcome::refused;
    case QNetworkReply::TimeoutError:
    case QNetworkReply::OperationCanceledError:
        return Outcome::timedOut;
    case QNetworkReply::SslHandshakeFailedError:
        return Outcome::encryptionFailed;
    case QNetworkReply::ProxyConnectionRefusedError:
    case QNetworkReply::ProxyConnectionClosedError:
    case QNetworkReply::ProxyNotFoundError:
    case QNetworkReply::ProxyTimeoutError:
    case QNetworkReply::ProxyAuthenticationRequiredError:
        return Outcome::proxyFailed;
    default:
        return Outcome::unreachable;
    }
}

} // namespace

ServiceReach::ServiceReach(QNetworkAccessManager &manager, SystemProxies &proxies, std::chrono::milliseconds timeout)
    : m_manager(manager), m_proxies(proxies), m_timeout(timeout)
{
}

QCoro::Task<ServiceReach::Result> ServiceReach::ask(QUrl address)
{
    QElapsedTimer clock;
    clock.start();
    // From the event loop, so that nobody misses the signal of proxies that are known at once.
    m_proxies.lookUp(address, this,
                     [this] { QMetaObject::invokeMethod(this, &ServiceReach::proxiesKnown, Qt::QueuedConnection); });
    const bool areKnown = (co_await qCoro(this, &ServiceReach::proxiesKnown, m_timeout)).has_value();
    Result result{Outcome::timedOut, 0, std::chrono::milliseconds(clock.elapsed())};
    if (!areKnown) {
        co_return result;
    }
    HTTPRequest request;
    request.url = address;
    QNetworkRequest head = networkRequest(request);
    head.setTransferTimeout(static_cast<int>(m_timeout.count()));
    const std::unique_ptr<QNetworkReply> reply(m_manager.head(head));
    co_await reply.get();
    result.status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    result.outcome = outcomeOf(*reply, result.status);
    result.elapsed = std::chrono::milliseconds(clock.elapsed());
    co_return result;
}

} // namespace orvesa
