#include "Platform/linux/X11Workspace.h"

#include "Platform/linux/X11WindowOwner.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QGuiApplication>

#include <utility>

namespace orvesa {

using namespace Qt::StringLiterals;

X11Workspace::X11Workspace(X11Connection &connection) : m_connection(connection) {}

std::optional<qint64> X11Workspace::frontmostApplication() const
{
    if (!m_connection.isValid()) {
        return std::nullopt;
    }
    const auto active = m_connection.property(m_connection.root(), "_NET_ACTIVE_WINDOW");
    if (active.empty() || active.front() == XCB_WINDOW_NONE) {
        return std::nullopt;
    }
    return X11WindowOwner::process(m_connection, active.front());
}

void X11Workspace::setPermissionPage(std::function<void()> open)
{
    m_openPermissionPage = std::move(open);
}

bool X11Workspace::open(const QUrl &url)
{
    if (url.scheme() == "x-apple.systempreferences"_L1) {
        if (m_openPermissionPage) {
            m_openPermissionPage();
        }
        return static_cast<bool>(m_openPermissionPage);
    }
    if (!url.isValid() || qobject_cast<QGuiApplication *>(QCoreApplication::instance()) == nullptr) {
        return false;
    }
    return QDesktopServices::openUrl(url);
}

} // namespace orvesa
