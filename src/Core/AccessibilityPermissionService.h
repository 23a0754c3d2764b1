#pragma once

// The way to where the user grants the accessibility permission. Static operations; main thread.

#include "Platform/WorkspacePort.h"

namespace orvesa {

class AccessibilityPermissionService final {
public:
    AccessibilityPermissionService() = delete;

    /// Opens the system's page for the permission. A desktop without such a page opens what stands for it.
    static void openSystemSettings(WorkspacePort &workspace);
};

} // namespace orvesa
