#pragma once

// One capture on an X11 desktop, from the frozen screen to the chosen pixels. Blocks until the user has decided; main
// thread.

#include <QImage>
#include <QString>

namespace orvesa {

struct CaptureOutcome {
    QImage image; ///< null when the user cancelled or it failed
    double scale = 1;
    QString failure; ///< one English line; empty when there is none
};

/// Makes the QGuiApplication that fonts need once the screen is dimmed.
[[nodiscard]] CaptureOutcome captureOnX11(int &argc, char **argv);

} // namespace orvesa
