#include "Platform/linux/ATSPIAnnouncement.h"

#include <QAccessible>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QVariantMap>

using namespace Qt::StringLiterals;

namespace orvesa::ATSPIAnnouncement {

void send(QObject &window, const QString &text)
{
    if (!QAccessible::isActive()) {
        return;
    }
    QDBusConnection bus(u"a11y"_s); // the name under which Qt keeps it
    QAccessibleInterface *const source = QAccessible::queryAccessibleInterface(&window);
    if (!bus.isConnected() || source == nullptr) {
        return;
    }
    const QString path = u"/org/a11y/atspi/accessible/%1"_s.arg(QAccessible::uniqueId(source));
    QDBusMessage event =
        QDBusMessage::createSignal(path, u"org.a11y.atspi.Event.Object"_s, u"Announcement"_s);
    constexpr int polite = 1;
    event << QString() << polite << 0 << QVariant::fromValue(QDBusVariant(text)) << QVariantMap();
    bus.send(event);
}

} // namespace orvesa::ATSPIAnnouncement
