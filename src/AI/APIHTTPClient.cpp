#include "AI/APIHTTPClient.h"

#include "AI/HTTPTransfer.h"
#include "Models/AppError.h"

#include <QNetworkReply>
#include <QStringDecoder>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

/// The bytes as text, or nothing when they are not valid UTF-8 from the first byte to the last.
[[nodiscard]] QString strictText(const QByteArray &bytes)
{
    QStringDecoder decoder(QStringConverter::Utf8,
                           QStringConverter::Flag::Stateless | QStringConverter::Flag::ConvertInitialBom);
    const QString text = decoder.decode(bytes);
    return decoder.hasError() ? QString() : text;
}

[[nodiscard]] AppError statusError(const HTTPResponse &response)
{
    return AppError::apiRequestFailed(u"HTTP "_s + QString::number(response.status) + u": "_s +
                                      strictText(response.body));
}

/// The request's way through all redirects to the body of a success.
[[nodiscard]] QCoro::Task<QByteArray> send(QNetworkAccessManager &manager, std::chrono::milliseconds timeout,
                                           HTTPRequest request, std::stop_token stop)
{
    if (request.url.scheme() != "https"_L1 && request.url.scheme() != "http"_L1) {
        // Qt would read files and data addresses as well.
        throw AppError(AppError::Kind::invalidAPIResponse);
    }
    for (int redirects = 0; redirects <= greatestRedirectCount; ++redirects) {
        HTTPTransfer transfer(manager, request, timeout, stop);
        const HTTPResponse response = co_await transfer.completion();
        if (response.status == 0) {
            throw AppError(AppError::Kind::invalidAPIResponse);
        }
        if (response.status >= 200 && response.status <= 299) {
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

} // namespace

APIHTTPClient::APIHTTPClient(QNetworkAccessManager &manager, std::chrono::milliseconds timeout)
    : m_manager(manager), m_timeout(timeout)
{
}

QCoro::Task<QByteArray> APIHTTPClient::postJSON(QUrl url, Headers headers, QByteArray body, std::stop_token stop)
{
    return send(m_manager, m_timeout, HTTPRequest{url, headers, body}, stop);
}

QCoro::Task<QByteArray> APIHTTPClient::get(QUrl url, Headers headers, std::stop_token stop)
{
    return send(m_manager, m_timeout, HTTPRequest{url, headers, std::nullopt}, stop);
}

void APIHTTPClient::preconnect(const QUrl &url)
{
    // Nobody else would ever delete the reply objects behind these calls.
    m_manager.setAutoDeleteReplies(true);
    if (url.scheme() == "https"_L1) {
        m_manager.connectToHostEncrypted(url.host(), static_cast<quint16>(url.port(443)));
    } else {
        m_manager.connectToHost(url.host(), static_cast<quint16>(url.port(80)));
    }
    m_manager.setAutoDeleteReplies(false);
}

} // namespace orvesa
