#pragma once

// The system's symbols as images. Main thread.

#include <QImage>
#include <QString>

namespace orvesa::AppKitSymbols {

/// The symbol in black on nothing, in the middle of a square of that many pixels; null when the system has none of that
/// name.
[[nodiscard]] QImage image(const QString &name, int pixels);

} // namespace orvesa::AppKitSymbols
