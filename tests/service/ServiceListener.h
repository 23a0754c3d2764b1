#pragma once

// The accepting socket of the loopback service and its connections. Everything runs in the thread that the listener
// lives in, except what the record keeps, which is locked.

#include "service/ServiceCertificate.h"
#include "service/ServiceRequest.h"
#include "service/ServiceResponse.h"

#include <QHostAddress>
#include <QTcpServer>

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <vector>

namespace orvesa::service {

class ServiceConnection;

/// Hands the answer over; from any thread, at any time, at most once.
using Answer = std::function<void(ServiceResponse)>;
/// Called in the listener's thread for every complete request.
using Responder = std::function<void(const ServiceRequest &, Answer)>;

/// What happened so far. Locked by its own mutex.
struct ServiceRecord {
    std::mutex mutex;
    std::vector<ServiceRequest> requests;
    std::vector<ClosedConnection> closed;
    int connections = 0;
    int handshakes = 0;
};

class ServiceListener final : public QTcpServer {
    Q_OBJECT

public:
    /// Without a certificate the service speaks plain HTTP.
    ServiceListener(Responder responder, std::shared_ptr<ServiceRecord> record,
                    std::shared_ptr<const ServiceCertificate> certificate);
    ~ServiceListener() override;

    void setResponder(Responder responder);
    void answer(int connection, const ServiceResponse &response);
    /// Stops listening and drops all connections.
    void shutDown();

Q_SIGNALS:
    /// The record has something new.
    void changed();

protected:
    void incomingConnection(qintptr descriptor) override;

private:
    void startConnection(int number, QTcpSocket *socket);

    Responder m_responder;
    std::shared_ptr<ServiceRecord> m_record;
    std::shared_ptr<const ServiceCertificate> m_certificate;
    std::map<int, ServiceConnection *> m_connections;
};

} // namespace orvesa::service
