#pragma once

// An HTTP proxy on this machine that leads every tunnel to one port of this machine, whatever its destination's name,
// and records what it was asked for. Lives in the thread that creates it and needs that thread's event loop.

#include <QByteArrayList>
#include <QObject>
#include <QString>
#include <QTcpServer>

namespace orvesa::service {

class LoopbackProxy final : public QObject {
    Q_OBJECT

public:
    /// Listens at once; tunnels lead to `upstreamPort`.
    explicit LoopbackProxy(quint16 upstreamPort);
    ~LoopbackProxy() override;

    [[nodiscard]] quint16 port() const { return m_server.serverPort(); }
    /// "http://127.0.0.1:4711".
    [[nodiscard]] QString address() const;
    /// The heads of all requests, as received.
    [[nodiscard]] const QByteArrayList &requests() const noexcept { return m_requests; }

private:
    void accept();

    quint16 m_upstreamPort;
    QByteArrayList m_requests;
    QTcpServer m_server;
};

} // namespace orvesa::service
