#include "AI/APIHTTPClient.h"

#include "AI/ErrorText.h"
#include "AI/HTTPTransfer.h"
#include "AI/SystemProxies.h"
#include "Models/AppError.h"

#include <QSslConfiguration>

#include <utility>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

[[nodiscard]] AppError statusError(const HTTPResponse &response)
{
    return AppError::apiRequestFailed(u"HTTP "_s + QString::number(response.status) + u": "_s +
                                      errorText(response.body));
}

} // namespace

APIHTTPClient::APIHTTPClient(QNetworkAccessManager &manager, std::chrono::milliseconds timeout, SystemProxies *proxies)
    : m_manager(manager), m_timeout(timeout), m_proxies(proxies)
{
}

QCoro::Task<QByteArray> APIHTTPClient::postJSON(QUrl url, Headers headers, QByteArray body, std::stop_token stop)
{
    return send(HTTPRequest{url, headers, body}, stop);
}

QCoro::Task<QByteArray> APIHTTPClient::get(QUrl url, Headers headers, std::stop_token stop)
{
    return send(HTTPRequest{url, headers, std::nullopt}, stop);
}

/// The request's way through all redirects to the body of a success.
QCoro::Task<QByteArray> APIHTTPClient::send(HTTPRequest request, std::stop_token stop)
{
    if (request.url.scheme() != "https"_L1 && request.url.scheme() != "http"_L1) {
        // Qt would read files and data addresses as well.
        throw AppError(AppError::Kind::invalidAPIResponse);
    }
    for (int redirects = 0; redirects <= greatestRedirectCount; ++redirects) {
        const auto preparation = [this, url = request.url](QObject *context, std::function<void()> prepared) {
            prepare(url, context, std::move(prepared));
        };
        HTTPTransfer transfer(m_manager, request, m_timeout, preparation, stop);
        const HTTPResponse response = co_await transfer.completion();
        if (response.status == 0) {
            throw AppError(AppError::Kind::invalidAPIResponse);
        }
        if (response.isSuccess()) {
            co_return response.body;
        }
        const std::optional<HTTPRequest> next =
            isRedirect(response.status) ? redirectedRequest(request, response.status, response.location) : std::nullopt;
        if (!next) {
            throw statusError(response);
        }
        request = *next;
    }
    throw AppError::apiRequestFailed(u"The server redirected the request too many times."_s);
}

void APIHTTPClient::preconnect(QUrl url)
{
    lookUpProxies(url, &m_context, [this, url] { openConnection(url); });
}

void APIHTTPClient::lookUpProxies(const QUrl &url, QObject *context, std::function<void()> known)
{
    if (m_proxies == nullptr) {
        known();
    } else {
        m_proxies->lookUp(url, context, std::move(known));
    }
}

void APIHTTPClient::prepare(const QUrl &url, QObject *context, std::function<void()> prepared)
{
    lookUpProxies(url, context, [this, url, context, prepared = std::move(prepared)] {
        const QNetworkReply *opening = openingOf(url);
        if (opening == nullptr || !opening->isRunning()) {
            prepared();
            return;
        }
        // However the opening ends: when it failed, the request finds out why. Not inside the opening's own end, for
        // only afterwards is its connection free.
        QObject::connect(opening, &QNetworkReply::finished, context, prepared,
                         static_cast<Qt::ConnectionType>(Qt::QueuedConnection | Qt::SingleShotConnection));
    });
}

void APIHTTPClient::openConnection(const QUrl &url)
{
    // Nobody else would ever delete the reply objects behind these calls.
    m_manager.setAutoDeleteReplies(true);
    if (url.scheme() == "https"_L1) {
        // The same offer as every request makes; a connection opened with another one would not be used.
        QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
        configuration.setAllowedNextProtocols(
            {QSslConfiguration::ALPNProtocolHTTP2, QSslConfiguration::NextProtocolHttp1_1});
        m_manager.connectToHostEncrypted(url.host(), static_cast<quint16>(url.port(443)), configuration);
        // Two requests that wait for one connection get a connection each when the service then chooses HTTP/1.1, so
        // a request has to know of this one.
        m_opening = m_manager.findChildren<QNetworkReply *>(QString(), Qt::FindDirectChildrenOnly).constLast();
    } else {
        m_manager.connectToHost(url.host(), static_cast<quint16>(url.port(80)));
    }
    m_manager.setAutoDeleteReplies(false);
}

QNetworkReply *APIHTTPClient::openingOf(const QUrl &url) const
{
    const auto port = [](const QUrl &address) { return address.port(443); };
    const bool isMeant = m_opening != nullptr && url.scheme() == "https"_L1 && m_opening->url().host() == url.host() &&
                         port(m_opening->url()) == port(url);
    return isMeant ? m_opening.data() : nullptr;
}

} // namespace orvesa
