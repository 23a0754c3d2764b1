#pragma once

// The shapes that the interface's own controls are made of, crisp at every scale. Main thread only.
//
// A control draws itself inside a margin of Style::focusRingWidth, in which its focus ring has room.

#include <QBrush>
#include <QPainter>

class QWidget;

namespace orvesa::ControlPainting {

/// The widget's area without the margin for the focus ring.
[[nodiscard]] QRectF controlArea(const QWidget &widget);
/// The same rectangle with its edges on the device's pixels, which they are not by themselves at a scale of 1.5.
[[nodiscard]] QRectF aligned(const QPainter &painter, const QRectF &area);
/// The widest line of about one point that fills whole device pixels.
[[nodiscard]] qreal hairline(const QPainter &painter);

/// A filled rounded rectangle with a thin outline inside its edges.
void paintFrame(QPainter &painter, const QRectF &area, qreal radius, const QBrush &fill, const QColor &line);
/// The ring around a control that has the keyboard, a point apart from it, since the control may have the same colour.
/// `accent` is to be told from the background.
void paintFocusRing(QPainter &painter, const QRectF &area, qreal radius, const QColor &accent);

/// The glow around a field that has the keyboard, and whose outline is drawn in the accent then.
void paintFieldGlow(QPainter &painter, const QRectF &area, qreal radius, const QColor &accent);

/// White text on one of the themes' gradients, with a soft shadow that keeps it readable on the lightest of them.
void drawTextOnGradient(QPainter &painter, const QRectF &area, const QString &line);

} // namespace orvesa::ControlPainting
