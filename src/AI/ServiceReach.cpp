#include "AI/ServiceReach.h"

#include "AI/NetworkRequest.h"
#include "AI/SystemProxies.h"

#include <QCoroNetworkReply>
#include <QCoroSignal>

#include <QElapsedTimer>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QScopedPointer>
#include <QTimer>

#include <algorithm>
#include <memory>
#include <utility>

namespace orvesa {

using namespace std::chrono_literals;

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
    // One answer, from the event loop so that nobody misses it. QCoro's own time-out could leave a second one posted to
    // a frame that is gone.
    const auto answer = [this, isAnswered = std::make_shared<bool>(false)](bool areKnown) {
        if (!std::exchange(*isAnswered, true)) {
            Q_EMIT proxiesKnown(areKnown);
        }
    };
    m_proxies.lookUp(address, this, [this, answer] { QTimer::singleShot(0, this, [answer] { answer(true); }); });
    QTimer::singleShot(m_timeout, this, [answer] { answer(false); });
    const bool areKnown = co_await qCoro(this, &ServiceReach::proxiesKnown);
    Result result{Outcome::timedOut, 0, std::chrono::milliseconds(clock.elapsed())};
    if (!areKnown) {
        co_return result;
    }
    HTTPRequest request;
    request.url = address;
    const QNetworkRequest head = networkRequest(request);
    // Deleted later: this goes on inside the reply's own signal, after which the reply is not done with itself.
    const std::unique_ptr<QNetworkReply, QScopedPointerDeleteLater> reply(m_manager.head(head));
    const std::chrono::milliseconds left = m_timeout - std::chrono::milliseconds(clock.elapsed());
    QTimer::singleShot(std::max(left, 0ms), reply.get(), &QNetworkReply::abort);
    co_await reply.get();
    result.status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    result.outcome = outcomeOf(*reply, result.status);
    result.elapsed = std::chrono::milliseconds(clock.elapsed());
    co_return result;
}

} // namespace orvesa
