#pragma once

// The active window's process, and opening addresses with the desktop's chosen programs. Main thread.

#include "Platform/WorkspacePort.h"
#include "Platform/linux/X11Connection.h"

namespace orvesa {

class X11Workspace final : public WorkspacePort {
public:
    /// The connection must outlive this object.
    explicit X11Workspace(X11Connection &connection);

    [[nodiscard]] std::optional<qint64> frontmostApplication() const override;
    bool open(const QUrl &url) override;

private:
    [[nodiscard]] std::optional<qint64> clientProcess(xcb_window_t window) const;

    X11Connection &m_connection;
};

} // namespace orvesa
