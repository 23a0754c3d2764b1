#pragma once

// One capture through the desktop portal, where programs may not look at the screen themselves. The desktop's own
// dialog lets the user choose. Blocks in an event loop of its own; main thread.

#include <QString>

namespace orvesa {

/// Puts the capture at `path`; no file when the user cancels. An English line when there is no portal or it fails.
[[nodiscard]] QString captureThroughPortal(int &argc, char **argv, const QString &path);

} // namespace orvesa
