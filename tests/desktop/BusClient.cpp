#include "desktop/BusClient.h"

#include <QDBusConnectionInterface>
#include <QDBusReply>
#include <QDBusServiceWatcher>
#include <QUuid>

namespace orvesa::desktop {

using namespace Qt::StringLiterals;

BusClient::BusClient(const QString &address)
    : m_name(u"desktop-bus-"_s + QUuid::createUuid().toString(QUuid::WithoutBraces)),
      m_connection(QDBusConnection::connectToBus(address, m_name))
{
    if (!m_connection.isConnected())
        throw DesktopError(u"no connection to the bus %1: %2"_s.arg(address, m_connection.lastError().message()));
}

BusClient::~BusClient()
{
    m_connection = QDBusConnection(QString());
    QDBusConnection::disconnectFromBus(m_name);
}

bool BusClient::hasOwner(const QString &name)
{
    return m_connection.interface()->isServiceRegistered(name).value();
}

void BusClient::awaitOwnership(const QString &name, bool owned, std::chrono::milliseconds deadline)
{
    const QDBusServiceWatcher watcher(name, m_connection); // its signal wakes the wait
    waitUntil([&] { return hasOwner(name) == owned; },
              owned ? u"%1 on the bus"_s.arg(name) : u"%1 to leave the bus"_s.arg(name), deadline);
}

void BusClient::awaitOwner(const QString &name, std::chrono::milliseconds deadline)
{
    awaitOwnership(name, true, deadline);
}

void BusClient::awaitNoOwner(const QString &name, std::chrono::milliseconds deadline)
{
    awaitOwnership(name, false, deadline);
}

QDBusMessage BusClient::call(const QString &service, const QString &path, const QString &interface,
                             const QString &method, const QVariantList &arguments)
{
    QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, method);
    message.setArguments(arguments);
    QDBusMessage reply = m_connection.call(message, QDBus::Block, static_cast<int>(usualDeadline.count()));
    if (reply.type() != QDBusMessage::ReplyMessage)
        throw DesktopError(u"%1.%2 failed: %3"_s.arg(interface, method, reply.errorMessage()));
    return reply;
}

} // namespace orvesa::desktop
