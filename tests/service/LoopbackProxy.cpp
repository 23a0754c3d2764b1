#include "service/LoopbackProxy.h"

#include <QHostAddress>
#include <QNetworkProxy>
#include <QTcpSocket>

namespace orvesa::service {

using namespace Qt::StringLiterals;

namespace {

constexpr auto endOfHead = "\r\n\r\n";

void pass(QTcpSocket *from, QTcpSocket *to)
{
    const auto forward = [from, to] { to->write(from->readAll()); };
    QObject::connect(from, &QTcpSocket::readyRead, to, forward);
    QObject::connect(from, &QTcpSocket::disconnected, to, &QTcpSocket::disconnectFromHost);
}

} // namespace

LoopbackProxy::LoopbackProxy(quint16 upstreamPort) : m_upstreamPort(upstreamPort)
{
    connect(&m_server, &QTcpServer::newConnection, this, &LoopbackProxy::accept);
    if (!m_server.listen(QHostAddress(QHostAddress::LocalHost))) {
        qFatal("The loopback proxy cannot listen.");
    }
}

LoopbackProxy::~LoopbackProxy()
{
    m_server.disconnect(this);
}

QString LoopbackProxy::address() const
{
    return u"http://127.0.0.1:"_s + QString::number(port());
}

void LoopbackProxy::accept()
{
    QTcpSocket *client = m_server.nextPendingConnection();
    connect(client, &QTcpSocket::readyRead, this, [this, client, head = QByteArray()]() mutable {
        head += client->readAll();
        if (!head.endsWith(endOfHead)) {
            return;
        }
        m_requests.append(head);
        client->disconnect(this);
        if (!head.startsWith("CONNECT ")) {
            client->write("HTTP/1.1 405 Only tunnels\r\nContent-Length: 0\r\n\r\n");
            return;
        }
        auto *upstream = new QTcpSocket(client);
        // Names are not looked up here.
        upstream->setProxy(QNetworkProxy(QNetworkProxy::NoProxy));
        connect(upstream, &QTcpSocket::connected, client, [client, upstream] {
            client->write("HTTP/1.1 200 Connected\r\n\r\n");
            pass(client, upstream);
            pass(upstream, client);
        });
        upstream->connectToHost(QHostAddress(QHostAddress::LocalHost), m_upstreamPort);
    });
}

} // namespace orvesa::service
