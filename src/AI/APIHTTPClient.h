#pragma once

// The one place where the program talks HTTP.
//
// A thin layer over one shared QNetworkAccessManager: no retries, no cookies, no cache. Main thread; any number of
// operations may run at once. Every failure is an AppError. A body larger than maximumBodyBytes is refused and never
// held in memory whole. Redirects are followed, but headers given by the caller never go to another origin.

#include "AI/HTTPRequest.h"

#include <QByteArray>
#include <QCoroTask>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QUrl>

#include <chrono>
#include <functional>
#include <stop_token>

namespace orvesa {

class SystemProxies;

class APIHTTPClient final {
public:
    using Headers = HTTPRequest::Headers;

    /// Time without a byte after which a transfer fails. Ten times as long for all of it, however it trickles.
    static constexpr std::chrono::milliseconds defaultTimeout = std::chrono::seconds(60);
    /// An answer's greatest size, after decompression.
    static constexpr qint64 maximumBodyBytes = qint64{16} * 1024 * 1024;
    /// How much of an error's body reaches the message.
    static constexpr qsizetype maximumErrorBytes = 500;

    /// Manager and proxies must outlive the client; without proxies it asks nobody for them.
    explicit APIHTTPClient(QNetworkAccessManager &manager, std::chrono::milliseconds timeout = defaultTimeout,
                           SystemProxies *proxies = nullptr);

    /// POSTs a JSON body; gives the answer's bytes.
    [[nodiscard]] QCoro::Task<QByteArray> postJSON(QUrl url, Headers headers, QByteArray body,
                                                   std::stop_token stop = {});
    [[nodiscard]] QCoro::Task<QByteArray> get(QUrl url, Headers headers, std::stop_token stop = {});
    /// Opens the connection to the address ahead of a request.
    void preconnect(QUrl url);

private:
    [[nodiscard]] QCoro::Task<QByteArray> send(HTTPRequest request, std::stop_token stop);
    /// Calls `prepared` when the way to the address is known and no connection to it is being opened.
    void prepare(const QUrl &url, QObject *context, std::function<void()> prepared);
    void lookUpProxies(const QUrl &url, QObject *context, std::function<void()> known);
    void openConnection(const QUrl &url);
    [[nodiscard]] QNetworkReply *openingOf(const QUrl &url) const;

    QNetworkAccessManager &m_manager;
    std::chrono::milliseconds m_timeout;
    SystemProxies *m_proxies;
    /// The last connection that was opened ahead, as long as it is being opened.
    QPointer<QNetworkReply> m_opening;
    QObject m_context; ///< ends with the client what still waits to be opened
};

} // namespace orvesa
