#pragma once

// What the application object is told before the event loop runs. Main thread, inside a QApplication.

namespace orvesa::AppKitApplication {

/// No Dock icon and no menu bar of its own in front: an application of the status bar.
void becomeAccessory();

} // namespace orvesa::AppKitApplication
