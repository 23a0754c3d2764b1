#include "service/ServiceConnection.h"

#include <QSslSocket>

#include <sys/socket.h>

#include <algorithm>
#include <utility>

namespace orvesa::service {

namespace {

constexpr qsizetype defaultPieceBytes = 64 * 1024;
constexpr qint64 greatestBacklog = 256 * 1024;

} // namespace

ServiceConnection::ServiceConnection(int number, QTcpSocket *socket, QObject *parent)
    : QObject(parent), m_number(number), m_socket(socket), m_timer(this)
{
    m_socket->setParent(this);
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(m_socket, &QTcpSocket::readyRead, this, &ServiceConnection::readRequest);
    connect(m_socket, &QTcpSocket::disconnected, this, [this] {
        m_timer.stop();
        Q_EMIT closed(m_endedByService ? ClosedConnection::Side::service : ClosedConnection::Side::peer);
    });
}

void ServiceConnection::readRequest()
{
    if (m_received.isEmpty() && !m_request) {
        m_firstByte = monotonicNanoseconds();
    }
    m_received += m_socket->readAll();
    if (m_stage == Stage::answering || m_received.isEmpty()) {
        return; // the next request waits until this one is answered
    }
    if (!m_request && !takeHead()) {
        return;
    }
    const qint64 length = m_request->header("Content-Length").value_or("0").toLongLong();
    if (m_received.size() < length) {
        return;
    }
    m_request->body = m_received.first(length);
    m_received.remove(0, length);
    m_request->completeNanoseconds = monotonicNanoseconds();
    m_stage = Stage::answering;
    const ServiceRequest request = *std::exchange(m_request, std::nullopt);
    Q_EMIT requestReceived(request);
}

bool ServiceConnection::takeHead()
{
    const qsizetype end = m_received.indexOf("\r\n\r\n");
    if (end < 0) {
        return false;
    }
    ServiceRequest request;
    request.connection = m_number;
    request.firstByteNanoseconds = m_firstByte;
    const QList<QByteArray> lines = m_received.first(end).replace("\r\n", "\n").split('\n');
    m_received.remove(0, end + 4);
    const QList<QByteArray> words = lines.first().split(' ');
    request.method = words.value(0);
    request.target = words.value(1);
    for (qsizetype index = 1; index < lines.size(); ++index) {
        const QByteArray &line = lines.at(index);
        const qsizetype colon = line.indexOf(':');
        const qsizetype value = line.sliced(colon + 1).startsWith(' ') ? colon + 2 : colon + 1;
        request.headers.emplace_back(line.first(std::max<qsizetype>(colon, 0)), line.sliced(value));
    }
    m_request = std::move(request);
    return true;
}

void ServiceConnection::answer(const ServiceResponse &response)
{
    if (m_stage != Stage::answering || response.answering == ServiceResponse::Answering::never) {
        return;
    }
    m_response = response;
    m_body = response.codedBody();
    m_bodySent = 0;
    m_generatedSent = 0;
    m_bytesUntilCut = response.cutAfterBytes;
    m_timer.disconnect();
    connect(&m_timer, &QTimer::timeout, this, &ServiceConnection::startBody);
    if (response.delay.count() > 0) {
        m_timer.start(response.delay);
    } else {
        startBody();
    }
}

void ServiceConnection::startBody()
{
    m_timer.disconnect();
    connect(&m_timer, &QTimer::timeout, this, &ServiceConnection::sendBody);
    if (!send(m_response.head(m_body.size() + m_response.generatedBytes))) {
        return;
    }
    if (m_response.cutAfterBodyBytes) {
        m_bytesUntilCut = m_response.cutAfterBodyBytes;
    }
    connect(m_socket, &QTcpSocket::bytesWritten, this, &ServiceConnection::sendBody, Qt::UniqueConnection);
    sendBody();
}

void ServiceConnection::sendBody()
{
    if (m_timer.isActive()) {
        return; // the next piece has its own time
    }
    while (m_socket->state() == QAbstractSocket::ConnectedState && m_socket->bytesToWrite() < greatestBacklog) {
        const QByteArray piece = nextPiece();
        if (piece.isEmpty()) {
            disconnect(m_socket, &QTcpSocket::bytesWritten, this, &ServiceConnection::sendBody);
            sendEnd();
            return;
        }
        const bool chunked = m_response.framing == ServiceResponse::Framing::chunked;
        if (!send(chunked ? QByteArray::number(piece.size(), 16) + "\r\n" + piece + "\r\n" : piece)) {
            return;
        }
        if (m_response.pieceInterval.count() > 0) {
            m_timer.start(m_response.pieceInterval);
            return;
        }
    }
}

QByteArray ServiceConnection::nextPiece()
{
    const qsizetype limit = m_response.pieceBytes > 0 ? m_response.pieceBytes : defaultPieceBytes;
    if (m_bodySent < m_body.size()) {
        const QByteArray piece = m_body.mid(m_bodySent, limit);
        m_bodySent += piece.size();
        return piece;
    }
    const qint64 length = std::min<qint64>(limit, m_response.generatedBytes - m_generatedSent);
    m_generatedSent += length;
    return QByteArray(static_cast<qsizetype>(length), 'x');
}

void ServiceConnection::sendEnd()
{
    if (m_response.framing == ServiceResponse::Framing::chunked && !send("0\r\n\r\n")) {
        return;
    }
    if (m_bytesUntilCut) {
        return end(m_response.ending); // the cut lies beyond the answer: cut here
    }
    if (m_response.framing == ServiceResponse::Framing::untilClose ||
        m_response.ending != ServiceResponse::Ending::keepAlive) {
        return end(m_response.ending);
    }
    m_stage = Stage::receiving;
    readRequest();
}

bool ServiceConnection::send(const QByteArray &bytes)
{
    if (!m_bytesUntilCut || *m_bytesUntilCut >= bytes.size()) {
        if (m_bytesUntilCut) {
            *m_bytesUntilCut -= bytes.size();
        }
        m_socket->write(bytes);
        return true;
    }
    m_socket->write(bytes.first(static_cast<qsizetype>(*m_bytesUntilCut)));
    end(m_response.ending);
    return false;
}

void ServiceConnection::end(ServiceResponse::Ending ending)
{
    m_endedByService = true;
    m_timer.stop();
    disconnect(m_socket, &QTcpSocket::bytesWritten, this, &ServiceConnection::sendBody);
    if (ending != ServiceResponse::Ending::reset) {
        m_socket->disconnectFromHost(); // after everything written is out
        return;
    }
    connect(m_socket, &QTcpSocket::bytesWritten, this, &ServiceConnection::resetWhenFlushed);
    if (auto *encrypted = qobject_cast<QSslSocket *>(m_socket)) {
        connect(encrypted, &QSslSocket::encryptedBytesWritten, this, &ServiceConnection::resetWhenFlushed);
    }
    resetWhenFlushed();
}

void ServiceConnection::resetWhenFlushed()
{
    const auto *encrypted = qobject_cast<QSslSocket *>(m_socket);
    if (m_socket->bytesToWrite() == 0 && (encrypted == nullptr || encrypted->encryptedBytesToWrite() == 0)) {
        // From the event loop: this may be running inside the socket's own writing.
        QMetaObject::invokeMethod(this, &ServiceConnection::reset, Qt::QueuedConnection);
    }
}

void ServiceConnection::reset()
{
    if (m_socket->state() == QAbstractSocket::UnconnectedState) {
        return;
    }
    // A linger time of zero makes the kernel send a reset instead of an orderly end.
    const linger none{.l_onoff = 1, .l_linger = 0};
    setsockopt(static_cast<int>(m_socket->socketDescriptor()), SOL_SOCKET, SO_LINGER, &none, sizeof none);
    m_socket->abort();
}

} // namespace orvesa::service
