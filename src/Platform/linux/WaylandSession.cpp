#include "Platform/linux/WaylandSession.h"

#include <QByteArray>
#include <QtGlobal>

namespace orvesa::WaylandSession {

namespace {

constexpr const char *platformVariable = "QT_QPA_PLATFORM";

} // namespace

bool isRunning()
{
    return !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
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
