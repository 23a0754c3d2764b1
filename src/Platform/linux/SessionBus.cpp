#include "Platform/linux/SessionBus.h"

#include <QByteArray>
#include <QtGlobal>

#include <sys/stat.h>
#include <unistd.h>

namespace orvesa::SessionBus {

bool isAnnounced()
{
    const QByteArray address = qgetenv("DBUS_SESSION_BUS_ADDRESS");
    if (!address.isEmpty()) {
        return !address.startsWith("autolaunch:");
    }
    const QByteArray runtimeFolder = qgetenv("XDG_RUNTIME_DIR");
    if (runtimeFolder.isEmpty()) {
        return false;
    }
    struct stat status {};
    const QByteArray path = runtimeFolder + "/bus";
    return ::stat(path.constData(), &status) == 0 && S_ISSOCK(status.st_mode) && status.st_uid == ::getuid();
}

std::optional<QDBusConnection> connection()
{
    if (!isAnnounced()) {
        return std::nullopt;
    }
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        return std::nullopt;
    }
    return bus;
}

} // namespace orvesa::SessionBus
