#include "Platform/linux/SecretServiceStatus.h"

#include <memory>

namespace orvesa::SecretServiceStatus {

namespace {

bool meansNoStore(const SecretLibrary &library, const GError &error)
{
    if (error.domain == library.dbusErrorQuark()) {
        switch (error.code) {
        case G_DBUS_ERROR_SERVICE_UNKNOWN:
        case G_DBUS_ERROR_NAME_HAS_NO_OWNER:
        case G_DBUS_ERROR_NO_REPLY:
        case G_DBUS_ERROR_NO_SERVER:
        case G_DBUS_ERROR_TIMEOUT:
        case G_DBUS_ERROR_TIMED_OUT:
        case G_DBUS_ERROR_DISCONNECTED:
        case G_DBUS_ERROR_SPAWN_EXEC_FAILED:
        case G_DBUS_ERROR_SPAWN_FORK_FAILED:
        case G_DBUS_ERROR_SPAWN_CHILD_EXITED:
        case G_DBUS_ERROR_SPAWN_CHILD_SIGNALED:
        case G_DBUS_ERROR_SPAWN_FAILED:
        case G_DBUS_ERROR_SPAWN_SERVICE_NOT_FOUND:
            return true;
        default:
            return false;
        }
    }
    // Whatever the transport below says means that nobody is there.
    return error.domain == library.ioErrorQuark() && error.code != G_IO_ERROR_DBUS_ERROR;
}

} // namespace

qint32 ofError(const SecretLibrary &library, GError *error)
{
    const std::unique_ptr<GError, decltype(&g_error_free)> owned(error, &g_error_free);
    if (error == nullptr) {
        return KeyStoreStatus::authorizationFailed;
    }
    if (error->domain == library.secretErrorQuark()) {
        switch (error->code) {
        case SECRET_ERROR_IS_LOCKED:
            return KeyStoreStatus::interactionNotAllowed;
        case SECRET_ERROR_NO_SUCH_OBJECT:
            return KeyStoreStatus::itemNotFound;
        default:
            return KeyStoreStatus::authorizationFailed;
        }
    }
    return meansNoStore(library, *error) ? KeyStoreStatus::notAvailable : KeyStoreStatus::authorizationFailed;
}

} // namespace orvesa::SecretServiceStatus
