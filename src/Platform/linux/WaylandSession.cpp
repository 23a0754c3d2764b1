#include "Platform/linux/WaylandSession.h"

#include <QByteArray>
#include <QtGlobal>

namespace orvesa::WaylandSession {

namespace {

constexpr const char *platformVariable = "QT_QPA_PLATFORM";

} // namespace

bool isRunning()
{
    // Managers of sessions may hand on the variable of an earlier session of the same user.
    return !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") && qgetenv("XDG_SESSION_TYPE") != "x11";
}

PreferredPlatform::PreferredPlatform()
    : m_isSet(isRunning() && !qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty(platformVariable))
{
    if (m_isSet) {
        qputenv(platformVariable, QByteArrayLiteral("xcb"));
    }
}

PreferredPlatform::~PreferredPlatform()
{
    if (m_isSet) {
        qunsetenv(platformVariable);
    }
}

} // namespace orvesa::WaylandSession
