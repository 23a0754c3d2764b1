#pragma once

// A secret as it travels to and from the key store: the structure (oayays) of its D-Bus interface. A value.

#include <QByteArray>
#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QMetaType>
#include <QString>

namespace orvesa::desktop {

struct SecretValue {
    QDBusObjectPath session;
    QByteArray parameters;
    QByteArray value;
    QString contentType;
};

QDBusArgument &operator<<(QDBusArgument &argument, const SecretValue &secret);
const QDBusArgument &operator>>(const QDBusArgument &argument, SecretValue &secret);

} // namespace orvesa::desktop

Q_DECLARE_METATYPE(orvesa::desktop::SecretValue)
