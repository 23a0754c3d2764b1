#pragma once

// What is drawn over the frozen screen: the size label and the crosshair pointer. Needs a QGuiApplication for fonts;
// main thread.

#include <QImage>
#include <QSize>

namespace orvesa::OverlayArt {

/// Premultiplied, in device pixels.
[[nodiscard]] QImage sizeLabel(QSize size, double scale);

struct Crosshair {
    QImage image;
    int hot = 0; ///< the place that points, across and down
};
[[nodiscard]] Crosshair crosshair(double scale);

} // namespace orvesa::OverlayArt
