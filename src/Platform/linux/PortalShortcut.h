#pragma once

// One shortcut as the desktop's portal takes it. A value.

#include <QDBusArgument>
#include <QList>
#include <QString>
#include <QVariant>
#include <QVariantMap>

namespace orvesa {

struct PortalShortcut {
    QString id;
    QVariantMap properties; ///< "description", "preferred_trigger"

    /// The shortcuts in a value that came over the bus; none where it holds something else.
    [[nodiscard]] static QList<PortalShortcut> listIn(const QVariant &value);
    /// Tells the bus library about the type. Call before it is sent or received.
    static void registerType();
};

QDBusArgument &operator<<(QDBusArgument &argument, const PortalShortcut &shortcut);
const QDBusArgument &operator>>(const QDBusArgument &argument, PortalShortcut &shortcut);

} // namespace orvesa

Q_DECLARE_METATYPE(orvesa::PortalShortcut)
