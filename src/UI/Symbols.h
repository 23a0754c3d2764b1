#pragma once

// Symbols by their system symbol name ("doc.on.doc"), rendered from vector images in the program's resources.
// Main thread only. Rendered images are kept, since the same few are painted again and again.

#include <QColor>
#include <QIcon>
#include <QPixmap>
#include <QString>

#include <functional>

QT_FORWARD_DECLARE_CLASS(QImage)

namespace orvesa::Symbols {

/// Gives a symbol in black on nothing, that many pixels square, or a null image.
using Source = std::function<QImage(const QString &name, int pixels)>;

/// Takes symbols from the desktop itself, where it has them; those that it does not have come from the resources. To be
/// set before the first symbol is drawn.
void setSource(Source source);

/// The symbol in one colour, `size` device-independent pixels square, crisp at the given pixel ratio. A name without an
/// image is a programming error and stops the program.
[[nodiscard]] QPixmap pixmap(const QString &name, const QColor &color, int size, qreal devicePixelRatio);

/// The symbol as an icon for the desktop's own surfaces (windows, trays), sharp at every size that they ask for.
[[nodiscard]] QIcon icon(const QString &name, const QColor &color);

} // namespace orvesa::Symbols
