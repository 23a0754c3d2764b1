#include "TrayWatcher.h"

#include "desktop/Waiting.h"
#include "service/ServiceRequest.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QDBusReply>
#include <QUuid>

#include <stdexcept>

namespace orvesa::benchmark {

using namespace Qt::StringLiterals;

TrayWatcher::TrayWatcher(const QString &sessionBusAddress)
    : m_connectionName(QUuid::createUuid().toString()),
      m_connection(QDBusConnection::connectToBus(sessionBusAddress, m_connectionName))
{
    const bool registered =
        m_connection.registerObject(u"/StatusNotifierWatcher"_s, this, QDBusConnection::ExportAllContents) &&
        m_connection.registerService(u"org.kde.StatusNotifierWatcher"_s);
    if (!registered) {
        throw std::runtime_error("cannot stand in for the tray: " + m_connection.lastError().message().toStdString());
    }
}

TrayWatcher::~TrayWatcher()
{
    QDBusConnection::disconnectFromBus(m_connectionName);
}

void TrayWatcher::RegisterStatusNotifierItem(const QString &service)
{
    const QString bus = message().service();
    m_items.append(service);
    auto question =
        QDBusMessage::createMethodCall(bus, u"/StatusNotifierItem"_s, u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    question << u"org.kde.StatusNotifierItem"_s << u"Id"_s;
    auto *answer = new QDBusPendingCallWatcher(m_connection.asyncCall(question), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, bus](QDBusPendingCallWatcher *finished) {
        finished->deleteLater();
        if (!finished->isError()) {
            noteAnswer(bus);
        }
    });
    Q_EMIT StatusNotifierItemRegistered(service);
}

void TrayWatcher::noteAnswer(const QString &bus)
{
    const qint64 now = service::monotonicNanoseconds();
    const QDBusReply<uint> pid = m_connection.interface()->servicePid(bus);
    if (pid.isValid()) {
        m_answers.try_emplace(pid.value(), now);
    }
}

qint64 TrayWatcher::awaitAnswer(qint64 pid, std::chrono::milliseconds deadline)
{
    desktop::waitUntil([&] { return m_answers.contains(pid); }, u"the tray icon of process %1"_s.arg(pid), deadline);
    return m_answers.at(pid);
}

} // namespace orvesa::benchmark
