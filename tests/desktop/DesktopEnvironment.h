#pragma once

// What every program on a private desktop sees in its environment: nothing of the developer's own session.
//
// Main thread.

#include "desktop/DesktopFolders.h"
#include "desktop/DesktopOptions.h"

#include <QProcessEnvironment>

namespace orvesa::desktop {

/// Before there is a display or a bus; their addresses are added when they run.
[[nodiscard]] QProcessEnvironment cleanEnvironment(const DesktopFolders &folders, const DesktopOptions &options);

} // namespace orvesa::desktop
