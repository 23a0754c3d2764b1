#include "AI/NetworkRequest.h"

#include <QCoreApplication>

#include <algorithm>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

/// A line break inside a value would begin a header of its own, so it becomes a blank.
[[nodiscard]] QByteArray singleLine(QByteArray value)
{
    std::replace_if(
        value.begin(), value.end(), [](char byte) { return byte == '\r' || byte == '\n' || byte == '\0'; }, ' ');
    return value;
}

} // namespace

QNetworkRequest networkRequest(const HTTPRequest &request)
{
    QNetworkRequest result(request.url);
    result.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    result.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    result.setAttribute(QNetworkRequest::CacheSaveControlAttribute, false);
    result.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    result.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    result.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    // Offered to an encrypted service, which chooses. Qt opens a connection ahead only for what this attribute says, so
    // the client opens it with the same offer.
    result.setAttribute(QNetworkRequest::Http2AllowedAttribute, true);
    // The size after decompression is bounded where the body is read, with a message of our own.
    result.setDecompressedSafetyCheckThreshold(-1);
    result.setHeader(QNetworkRequest::UserAgentHeader, u"OrvesaTranslate"_s);
    if (request.body) {
        result.setHeader(QNetworkRequest::ContentTypeHeader, u"application/json"_s);
    }
    for (const auto &[name, value] : request.headers) {
        result.setRawHeader(name, singleLine(value));
    }
    return result;
}

} // namespace orvesa
