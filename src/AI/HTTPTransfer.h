#pragma once

// One request on its way and its answer, until the answer is complete, refused, too slow, broken or no longer wanted.
//
// Made, awaited once and destroyed inside one coroutine, on the main thread. Follows no redirect. Destroying it ends
// the transfer. Memory is bounded: an answer that grows beyond the bound is dropped, and of an answer that is no
// success only the part that a message can show is read.

#include "AI/HTTPRequest.h"

#include <QByteArray>
#include <QNetworkReply>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QTimer>

#include <chrono>
#include <coroutine>
#include <functional>
#include <optional>
#include <stop_token>

QT_BEGIN_NAMESPACE
class QNetworkAccessManager;
QT_END_NAMESPACE

namespace orvesa {

struct HTTPResponse {
    int status = 0;      ///< 0: what answered does not speak HTTP
    QByteArray body;     ///< whole for a success, its beginning otherwise
    QByteArray location; ///< the Location header, empty without one

    [[nodiscard]] bool isSuccess() const { return status >= 200 && status <= 299; }
};

class HTTPTransfer final : public QObject {
    Q_OBJECT

public:
    /// What has to happen before the request can be sent: calls its second argument afterwards, or right away, unless
    /// the first one is gone by then.
    using Preparation = std::function<void(QObject *context, std::function<void()> prepared)>;

    /// How many times the idle time-out all of a transfer may take, from a service that never falls silent.
    static constexpr int mostTimeouts = 10;

    /// Prepares and sends the request, unless a stop was requested already.
    HTTPTransfer(QNetworkAccessManager &manager, const HTTPRequest &request, std::chrono::milliseconds idleTimeout,
                 const Preparation &prepare, std::stop_token stop);
    ~HTTPTransfer() override;

    class Completion final {
    public:
        explicit Completion(HTTPTransfer &transfer) : m_transfer(transfer) {}
        [[nodiscard]] bool await_ready() const noexcept { return m_transfer.m_isDone; }
        void await_suspend(std::coroutine_handle<> awaiting) noexcept { m_transfer.m_awaiting = awaiting; }
        [[nodiscard]] HTTPResponse await_resume() { return m_transfer.takeResponse(); }

    private:
        HTTPTransfer &m_transfer;
    };

    /// To be awaited: gives the response or throws AppError::apiRequestFailed.
    [[nodiscard]] Completion completion() { return Completion(*this); }

private:
    void send();
    void watch();
    void readBody();
    void judge();
    /// When whoever waits for the end hears of it.
    enum class Resumption { fromEventLoop, now };
    void fail(const QString &message, Resumption resumption = Resumption::fromEventLoop);
    void finish(Resumption resumption);
    [[nodiscard]] bool readStatus();
    [[nodiscard]] bool isCutShort() const;
    [[nodiscard]] QString transportFailure() const;
    [[nodiscard]] HTTPResponse takeResponse();

    QNetworkAccessManager &m_manager;
    HTTPRequest m_request;
    QTimer m_idleTimer;
    QTimer m_wholeTimer;
    QPointer<QNetworkReply> m_reply;
    HTTPResponse m_response;
    qint64 m_announced = 0; ///< the answer's length by its header, 0 without one
    std::optional<QString> m_failure;
    bool m_isDone = false;
    std::coroutine_handle<> m_awaiting;
    // Last, so that it is gone before anything that it touches.
    std::optional<std::stop_callback<std::function<void()>>> m_stopCallback;
};

} // namespace orvesa
