#pragma once

// One accepted connection of the loopback service: reads requests, one at a time, and sends the answers.
// Lives in the listener's thread and is owned by the listener.

#include "service/ServiceRequest.h"
#include "service/ServiceResponse.h"

#include <QObject>
#include <QTimer>

#include <optional>

QT_BEGIN_NAMESPACE
class QTcpSocket;
QT_END_NAMESPACE

namespace orvesa::service {

class ServiceConnection final : public QObject {
    Q_OBJECT

public:
    /// Takes the socket over.
    ServiceConnection(int number, QTcpSocket *socket, QObject *parent);

    [[nodiscard]] int number() const noexcept { return m_number; }
    /// Answers the request announced last.
    void answer(const ServiceResponse &response);

Q_SIGNALS:
    void requestReceived(const orvesa::service::ServiceRequest &request);
    void closed(orvesa::service::ClosedConnection::Side side);

private:
    enum class Stage { receiving, answering };

    void readRequest();
    [[nodiscard]] bool takeHead();
    void startBody();
    void sendBody();
    void sendEnd();
    /// Sends the bytes, or the part of them that fits before the cut; false when the cut was reached.
    [[nodiscard]] bool send(const QByteArray &bytes);
    void end(ServiceResponse::Ending ending);
    void resetWhenFlushed();
    void reset();
    [[nodiscard]] QByteArray nextPiece();

    int m_number;
    QTcpSocket *m_socket;
    QTimer m_timer;
    Stage m_stage = Stage::receiving;
    bool m_endedByService = false;

    QByteArray m_received;
    std::optional<ServiceRequest> m_request; ///< the head is complete, the body may not be
    qint64 m_firstByte = 0;

    ServiceResponse m_response;
    QByteArray m_body;
    qsizetype m_bodySent = 0;
    qint64 m_generatedSent = 0;
    std::optional<qint64> m_bytesUntilCut;
};

} // namespace orvesa::service
