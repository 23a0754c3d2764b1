#pragma once

// Writes a capture for its one reader. Pure but for the file; any thread.

#include <QImage>
#include <QString>

namespace orvesa {

/// A PNG with the scale in its physical resolution, mode 0600, that appears whole or not at all. An English line when
/// it cannot be written; empty otherwise.
[[nodiscard]] QString writeCapture(const QString &path, const QImage &image, double scale);

/// The same for bytes that are a PNG already.
[[nodiscard]] QString writePrivately(const QString &path, const QByteArray &bytes);

} // namespace orvesa
