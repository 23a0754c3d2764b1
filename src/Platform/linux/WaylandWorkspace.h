#pragma once

// The active window's process in a Wayland session, where the X server knows of the windows of X programs alone: for
// all others the accessibility bus tells.
//
// Main thread. A question waits 250 ms at most for the windows of all applications together, and as long for their
// states; what a capture waits here is taken from its 500 ms, and an application that was silent once is not waited for
// again. This process is never asked, since it could not answer itself.

#include "Platform/WorkspacePort.h"

namespace orvesa {

class ATSPIBus;

class WaylandWorkspace final : public WorkspacePort {
public:
    /// Both must outlive this object. `x11` is asked first, and opens addresses.
    WaylandWorkspace(WorkspacePort &x11, ATSPIBus &bus);

    [[nodiscard]] std::optional<qint64> frontmostApplication() const override;
    bool open(const QUrl &url) override;

private:
    WorkspacePort &m_x11;
    ATSPIBus &m_bus;
};

} // namespace orvesa
