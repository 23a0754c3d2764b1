#include "desktop/AnnouncementListener.h"

#include <QDBusVariant>
#include <QUuid>

namespace orvesa::desktop {

using namespace Qt::StringLiterals;

AnnouncementListener::AnnouncementListener(const QString &accessibilityBusAddress)
    : m_connectionName(QUuid::createUuid().toString()),
      m_connection(QDBusConnection::connectToBus(accessibilityBusAddress, m_connectionName))
{
    m_connection.connect({}, {}, u"org.a11y.atspi.Event.Object"_s, u"Announcement"_s, this, SLOT(note(QDBusMessage)));
}

AnnouncementListener::~AnnouncementListener()
{
    m_connection = QDBusConnection(QString());
    QDBusConnection::disconnectFromBus(m_connectionName);
}

void AnnouncementListener::note(const QDBusMessage &event)
{
    m_heard.append(event.arguments().value(3).value<QDBusVariant>().variant().toString());
}

} // namespace orvesa::desktop
