#include "Platform/linux/DisplayProbe.h"

#include <xcb/xcb.h>

#include <QByteArray>

namespace orvesa {

bool hasDisplay()
{
    // Somebody who names another platform than the usual ones knows what they do.
    const QByteArray platform = qgetenv("QT_QPA_PLATFORM");
    if (!platform.isEmpty() && !platform.startsWith("xcb") && !platform.startsWith("wayland")) {
        return true;
    }
    if (!qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") && !platform.startsWith("xcb")) {
        return true;
    }
    if (qEnvironmentVariableIsEmpty("DISPLAY")) {
        return false;
    }
    xcb_connection_t *connection = xcb_connect(nullptr, nullptr);
    const bool valid = xcb_connection_has_error(connection) == 0;
    xcb_disconnect(connection);
    return valid;
}

} // namespace orvesa
