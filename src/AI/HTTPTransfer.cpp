#include "AI/HTTPTransfer.h"

#include "AI/APIHTTPClient.h"
#include "AI/ErrorText.h"
#include "AI/NetworkRequest.h"
#include "AI/RequestBody.h"
#include "Models/AppError.h"

#include <QCoreApplication>
#include <QNetworkAccessManager>

#include <algorithm>
#include <utility>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 leastReadBytes = qint64{16} * 1024;
constexpr qint64 greatestReadBytes = qint64{1024} * 1024;
constexpr qint64 networkBufferBytes = qint64{1024} * 1024;

/// Whether Qt's error says something about the connection rather than about the status that was received.
[[nodiscard]] bool isConnectionError(QNetworkReply::NetworkError error)
{
    return (error > QNetworkReply::NoError && error <= QNetworkReply::UnknownNetworkError) ||
           error == QNetworkReply::ProtocolUnknownError || error == QNetworkReply::ProtocolFailure;
}

[[nodiscard]] QString connectionClosed()
{
    return QCoreApplication::translate("QHttp", "Connection closed");
}

} // namespace

HTTPTransfer::HTTPTransfer(QNetworkAccessManager &manager, const HTTPRequest &request,
                           std::chrono::milliseconds idleTimeout, const Preparation &prepare, std::stop_token stop)
    : m_manager(manager), m_request(request)
{
    // Whoever requests the stop goes on to something else: the end of this is heard of before that begins, not in its
    // midst.
    const auto cancel = [this] {
        fail(QCoreApplication::translate("QNetworkReplyHttpImpl", "Operation canceled"), Resumption::now);
    };
    if (stop.stop_requested()) {
        cancel();
        return;
    }
    const auto timeOut = [this] { fail(QCoreApplication::translate("QAbstractSocket", "Socket operation timed out")); };
    m_idleTimer.setInterval(idleTimeout);
    m_wholeTimer.setInterval(mostTimeouts * idleTimeout);
    for (QTimer *timer : {&m_idleTimer, &m_wholeTimer}) {
        timer->setSingleShot(true);
        timer->callOnTimeout(this, timeOut);
        timer->start();
    }
    prepare(this, [this] { send(); });
    m_stopCallback.emplace(std::move(stop), cancel);
}

HTTPTransfer::~HTTPTransfer()
{
    m_stopCallback.reset();
    if (m_reply != nullptr) {
        // Deleting a reply closes its connection when it is still running. abort() would do so too, but then Qt may
        // find a second error for the same reply and complain about it.
        m_reply->disconnect(this);
        m_reply->deleteLater();
    }
}

void HTTPTransfer::send()
{
    if (m_isDone) {
        return; // too slow, or no longer wanted
    }
    QNetworkRequest request = networkRequest(m_request);
    if (m_request.body) {
        auto *body = new RequestBody(*m_request.body, nullptr);
        m_reply = m_manager.post(request, body);
        body->setParent(m_reply);
    } else {
        m_reply = m_manager.get(request);
    }
    m_reply->setReadBufferSize(networkBufferBytes);
    watch();
}

void HTTPTransfer::watch()
{
    const auto restart = [this] {
        if (!m_isDone) {
            m_idleTimer.start();
        }
    };
    QNetworkReply *reply = m_reply;
    connect(reply, &QNetworkReply::encrypted, this, restart);
    connect(reply, &QNetworkReply::uploadProgress, this, restart);
    connect(reply, &QNetworkReply::metaDataChanged, this, restart);
    connect(reply, &QNetworkReply::readyRead, this, [this, restart] {
        restart();
        readBody();
    });
    connect(reply, &QNetworkReply::finished, this, &HTTPTransfer::judge);
    m_idleTimer.start();
    if (reply->isFinished()) {
        judge();
    }
}

bool HTTPTransfer::readStatus()
{
    if (m_response.status != 0) {
        return true;
    }
    const QVariant status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute);
    if (!status.isValid()) {
        return false;
    }
    m_response.status = status.toInt();
    m_response.location = m_reply->rawHeader("Location");
    m_announced = m_reply->header(QNetworkRequest::ContentLengthHeader).toLongLong();
    return true;
}

void HTTPTransfer::readBody()
{
    if (m_isDone || !readStatus()) {
        return;
    }
    const bool isWanted = m_response.isSuccess();
    const qint64 bound = isWanted ? APIHTTPClient::maximumBodyBytes : APIHTTPClient::maximumErrorBytes;
    bool isTooLarge = isWanted && m_announced > bound;
    while (!isTooLarge) {
        // Qt makes room for all that it is asked for, and of a compressed body it does not know how much there is.
        const QByteArray bytes =
            m_reply->read(std::clamp(m_reply->bytesAvailable(), leastReadBytes, greatestReadBytes));
        if (bytes.isEmpty()) {
            return;
        }
        if (m_response.body.isEmpty() && isWanted && m_announced > bytes.size()) {
            m_response.body.reserve(m_announced);
        }
        isTooLarge = m_response.body.size() + bytes.size() > bound;
        m_response.body += isTooLarge ? bytes.first(bound - m_response.body.size()) : bytes;
    }
    if (isWanted) {
        m_response.body.clear();
        fail(u"The answer is larger than %1 MB and was refused."_s.arg(bound / 1024 / 1024));
    } else {
        finish(Resumption::fromEventLoop);
    }
}

void HTTPTransfer::judge()
{
    readBody();
    if (m_isDone) {
        return;
    }
    const QNetworkReply::NetworkError error = m_reply->error();
    // A status outside the successes is an error to Qt as well; that one is the caller's business, with its body.
    const bool isStatusError = m_response.status != 0 && !m_response.isSuccess() && !isConnectionError(error);
    if (error != QNetworkReply::NoError && !isStatusError) {
        fail(transportFailure(), Resumption::now);
    } else if (isCutShort()) {
        fail(connectionClosed(), Resumption::now);
    } else {
        finish(Resumption::now);
    }
}

bool HTTPTransfer::isCutShort() const
{
    const QByteArray body = m_response.body.trimmed();
    const bool isCompressed = m_reply->hasRawHeader("Content-Encoding");
    const QVariant announced = m_reply->header(QNetworkRequest::ContentLengthHeader);
    if (announced.isValid() && !isCompressed) {
        return m_response.body.size() < announced.toLongLong();
    }
    // Qt takes the end of the connection for the end of the body where it cannot compare lengths, even between two
    // chunks. JSON shows its own end; errors may be any text.
    return m_response.isSuccess() &&
           ((body.startsWith('{') && !body.endsWith('}')) || (body.startsWith('[') && !body.endsWith(']')));
}

QString HTTPTransfer::transportFailure() const
{
    if (m_reply->error() == QNetworkReply::ContentReSendError) {
        // The connection broke before the answer and the body was not sent again: say the first of the two.
        return connectionClosed();
    }
    return transferErrorText(platformErrorText(m_reply->error(), m_reply->errorString()), m_request.url);
}

void HTTPTransfer::fail(const QString &message, Resumption resumption)
{
    if (!m_isDone) {
        m_failure = message;
        finish(resumption);
    }
}

void HTTPTransfer::finish(Resumption resumption)
{
    m_isDone = true;
    m_idleTimer.stop();
    m_wholeTimer.stop();
    const auto resume = [this] {
        if (auto awaiting = std::exchange(m_awaiting, nullptr)) {
            awaiting.resume(); // which destroys this object
        }
    };
    if (resumption == Resumption::now) {
        resume();
    } else {
        // From a fresh call of the event loop: this may be running inside the reply.
        QMetaObject::invokeMethod(this, resume, Qt::QueuedConnection);
    }
}

HTTPResponse HTTPTransfer::takeResponse()
{
    if (m_failure) {
        throw AppError::apiRequestFailed(*m_failure);
    }
    return std::move(m_response);
}

} // namespace orvesa
