#include "service/ServiceListener.h"

#include "service/ServiceConnection.h"

#include <QSslConfiguration>
#include <QSslSocket>

#include <utility>

namespace orvesa::service {

ServiceListener::ServiceListener(Responder responder, std::shared_ptr<ServiceRecord> record,
                                 std::shared_ptr<const ServiceCertificate> certificate)
    : m_responder(std::move(responder)), m_record(std::move(record)), m_certificate(std::move(certificate))
{
}

ServiceListener::~ServiceListener()
{
    shutDown();
}

void ServiceListener::setResponder(Responder responder)
{
    m_responder = std::move(responder);
}

void ServiceListener::answer(int connection, const ServiceResponse &response)
{
    const auto found = m_connections.find(connection);
    if (found != m_connections.end()) {
        found->second->answer(response);
    }
}

void ServiceListener::shutDown()
{
    close();
    for (auto &[number, connection] : std::exchange(m_connections, {})) {
        connection->disconnect(this);
        delete connection;
    }
}

void ServiceListener::incomingConnection(qintptr descriptor)
{
    int number = 0;
    {
        const std::lock_guard lock(m_record->mutex);
        number = ++m_record->connections;
    }
    if (m_certificate == nullptr) {
        auto *socket = new QTcpSocket(this);
        socket->setSocketDescriptor(descriptor);
        socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
        startConnection(number, socket);
    } else {
        auto *socket = new QSslSocket(this);
        socket->setSocketDescriptor(descriptor);
        socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
        QSslConfiguration configuration = socket->sslConfiguration();
        configuration.setLocalCertificate(m_certificate->certificate());
        configuration.setPrivateKey(m_certificate->privateKey());
        configuration.setPeerVerifyMode(QSslSocket::VerifyNone);
        configuration.setAllowedNextProtocols({QSslConfiguration::NextProtocolHttp1_1});
        socket->setSslConfiguration(configuration);
        connect(socket, &QSslSocket::encrypted, this, [this] {
            {
                const std::lock_guard lock(m_record->mutex);
                ++m_record->handshakes;
            }
            Q_EMIT changed();
        });
        socket->startServerEncryption();
        startConnection(number, socket);
    }
    Q_EMIT changed();
}

void ServiceListener::startConnection(int number, QTcpSocket *socket)
{
    auto *connection = new ServiceConnection(number, socket, this);
    m_connections.emplace(number, connection);
    connect(connection, &ServiceConnection::requestReceived, this, [this, number](const ServiceRequest &request) {
        {
            const std::lock_guard lock(m_record->mutex);
            m_record->requests.push_back(request);
        }
        Q_EMIT changed();
        m_responder(request, [this, number](ServiceResponse response) {
            QMetaObject::invokeMethod(this,
                                      [this, number, response = std::move(response)] { answer(number, response); });
        });
    });
    connect(connection, &ServiceConnection::closed, this, [this, number, connection](ClosedConnection::Side side) {
        {
            const std::lock_guard lock(m_record->mutex);
            m_record->closed.push_back({number, side, monotonicNanoseconds()});
        }
        m_connections.erase(number);
        connection->deleteLater();
        Q_EMIT changed();
    });
}

} // namespace orvesa::service
