#pragma once

// The active window's process, and opening addresses with the desktop's chosen programs. Main thread.

#include "Platform/WorkspacePort.h"
#include "Platform/linux/X11Connection.h"

#include <functional>

namespace orvesa {

class X11Workspace final : public WorkspacePort {
public:
    /// The connection must outlive this object.
    explicit X11Workspace(X11Connection &connection);

    [[nodiscard]] std::optional<qint64> frontmostApplication() const override;
    bool open(const QUrl &url) override;

    /// What opens in place of the system's page for the accessibility permission, which this desktop does not have.
    void setPermissionPage(std::function<void()> open);

private:
    X11Connection &m_connection;
    std::function<void()> m_openPermissionPage;
};

} // namespace orvesa
