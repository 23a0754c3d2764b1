#pragma once

// A scripted HTTP service on this machine, standing in for the language-model services in tests, benchmarks and the
// demonstration.
//
// It answers each request as its script or its responder says and records everything it sees with monotonic time
// stamps. It runs in the thread that creates it, or in a thread of its own, where a blocked creator does not stop it.
// All operations are called from the creating thread; signals arrive there.

#include "service/ServiceListener.h"

#include <QObject>
#include <QString>
#include <QThread>

#include <chrono>
#include <functional>
#include <memory>
#include <vector>

namespace orvesa::service {

class LoopbackService final : public QObject {
    Q_OBJECT

public:
    enum class Transport { plain, tls };
    enum class Place { ownThread, callerThread };

    /// Listens at once on a free port of the address. Until it is told otherwise it stays silent on every request.
    explicit LoopbackService(Transport transport = Transport::plain, Place place = Place::ownThread,
                             const QHostAddress &address = QHostAddress(QHostAddress::LocalHost));
    ~LoopbackService() override;

    /// One answer per request, in this order whatever the connection; afterwards status 500 says that the script is
    /// over.
    void setScript(std::vector<ServiceResponse> script);
    /// Called in the service's thread.
    void setResponder(Responder responder);
    void setResponder(std::function<ServiceResponse(const ServiceRequest &)> responder);

    [[nodiscard]] quint16 port() const noexcept { return m_port; }
    /// "http://127.0.0.1:4711", without a trailing slash.
    [[nodiscard]] QString address() const;
    /// The certificate authority that a client has to trust; only with TLS.
    [[nodiscard]] const ServiceCertificate &certificate() const { return *m_certificate; }

    [[nodiscard]] std::vector<ServiceRequest> requests() const;
    [[nodiscard]] std::vector<ClosedConnection> closedConnections() const;
    /// Accepted so far.
    [[nodiscard]] int connectionCount() const;
    /// TLS connections whose encryption is established.
    [[nodiscard]] int handshakeCount() const;

    /// Runs the caller's event loop until the condition holds; false when the time is over.
    [[nodiscard]] bool waitUntil(const std::function<bool()> &condition,
                                 std::chrono::milliseconds timeout = std::chrono::seconds(10));
    [[nodiscard]] bool waitForRequests(std::size_t count);

Q_SIGNALS:
    /// A connection came or went, or a request arrived.
    void changed();

private:
    std::shared_ptr<ServiceRecord> m_record = std::make_shared<ServiceRecord>();
    std::shared_ptr<const ServiceCertificate> m_certificate;
    QString m_host;
    quint16 m_port = 0;
    QThread m_thread;
    std::unique_ptr<ServiceListener> m_listener;
};

} // namespace orvesa::service
