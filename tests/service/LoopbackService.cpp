#include "service/LoopbackService.h"

#include <QEventLoop>
#include <QTimer>

#include <utility>

namespace orvesa::service {

using namespace Qt::StringLiterals;

namespace {

/// Runs the operation in the listener's thread and returns when it is done.
template <typename Operation>
void runIn(ServiceListener &listener, Operation operation)
{
    const auto type =
        listener.thread() == QThread::currentThread() ? Qt::DirectConnection : Qt::BlockingQueuedConnection;
    QMetaObject::invokeMethod(&listener, operation, type);
}

} // namespace

LoopbackService::LoopbackService(Transport transport, Place place, const QHostAddress &address)
    : m_certificate(transport == Transport::tls ? std::make_shared<const ServiceCertificate>() : nullptr),
      m_host(address.protocol() == QAbstractSocket::IPv6Protocol ? u'[' + address.toString() + u']'
                                                                 : address.toString())
{
    const Responder silent = [](const ServiceRequest &, const Answer &) {};
    m_listener = std::make_unique<ServiceListener>(silent, m_record, m_certificate);
    connect(m_listener.get(), &ServiceListener::changed, this, &LoopbackService::changed);
    if (place == Place::ownThread) {
        m_listener->moveToThread(&m_thread);
        m_thread.start();
    }
    runIn(*m_listener, [this, &address] {
        if (!m_listener->listen(address)) {
            qFatal("The loopback service cannot listen.");
        }
        m_port = m_listener->serverPort();
    });
}

LoopbackService::~LoopbackService()
{
    runIn(*m_listener, [this] {
        m_listener->shutDown();
        m_listener->moveToThread(thread());
    });
    m_thread.quit();
    m_thread.wait();
}

void LoopbackService::setScript(std::vector<ServiceResponse> script)
{
    setResponder([script = std::move(script), next = std::size_t{0}](const ServiceRequest &) mutable {
        return next < script.size() ? script[next++] : ServiceResponse::text(500, "the script is over");
    });
}

void LoopbackService::setResponder(Responder responder)
{
    runIn(*m_listener, [this, &responder] { m_listener->setResponder(std::move(responder)); });
}

void LoopbackService::setResponder(std::function<ServiceResponse(const ServiceRequest &)> responder)
{
    setResponder(Responder([responder = std::move(responder)](const ServiceRequest &request, const Answer &answer) {
        answer(responder(request));
    }));
}

QString LoopbackService::address() const
{
    return (m_certificate != nullptr ? u"https://"_s : u"http://"_s) + m_host + u':' + QString::number(m_port);
}

std::vector<ServiceRequest> LoopbackService::requests() const
{
    const std::lock_guard lock(m_record->mutex);
    return m_record->requests;
}

std::vector<ClosedConnection> LoopbackService::closedConnections() const
{
    const std::lock_guard lock(m_record->mutex);
    return m_record->closed;
}

int LoopbackService::connectionCount() const
{
    const std::lock_guard lock(m_record->mutex);
    return m_record->connections;
}

int LoopbackService::handshakeCount() const
{
    const std::lock_guard lock(m_record->mutex);
    return m_record->handshakes;
}

bool LoopbackService::waitUntil(const std::function<bool()> &condition, std::chrono::milliseconds timeout)
{
    if (condition()) {
        return true;
    }
    QEventLoop loop;
    QTimer deadline;
    deadline.setSingleShot(true);
    connect(&deadline, &QTimer::timeout, &loop, &QEventLoop::quit);
    bool holds = false;
    connect(this, &LoopbackService::changed, &loop, [&] {
        if (condition()) {
            holds = true;
            loop.quit();
        }
    });
    deadline.start(timeout);
    // A change between the first test and the connection would otherwise go unseen.
    if (condition()) {
        return true;
    }
    loop.exec();
    return holds || condition();
}

bool LoopbackService::waitForRequests(std::size_t count)
{
    return waitUntil([this, count] { return requests().size() >= count; });
}

} // namespace orvesa::service
