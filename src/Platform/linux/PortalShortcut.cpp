#include "Platform/linux/PortalShortcut.h"

#include <QDBusMetaType>

namespace orvesa {

using namespace Qt::StringLiterals;

QList<PortalShortcut> PortalShortcut::listIn(const QVariant &value)
{
    if (!value.canConvert<QDBusArgument>()) {
        return {};
    }
    const auto argument = value.value<QDBusArgument>();
    return argument.currentSignature() == "a(sa{sv})"_L1 ? qdbus_cast<QList<PortalShortcut>>(argument)
                                                         : QList<PortalShortcut>();
}

void PortalShortcut::registerType()
{
    qDBusRegisterMetaType<PortalShortcut>();
    qDBusRegisterMetaType<QList<PortalShortcut>>();
}

QDBusArgument &operator<<(QDBusArgument &argument, const PortalShortcut &shortcut)
{
    argument.beginStructure();
    argument << shortcut.id << shortcut.properties;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, PortalShortcut &shortcut)
{
    argument.beginStructure();
    argument >> shortcut.id >> shortcut.properties;
    argument.endStructure();
    return argument;
}

} // namespace orvesa
