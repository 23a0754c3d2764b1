#pragma once

// Labels that show their text as it is. Qt guesses rich text by default; texts from outside must never be interpreted.
// Main thread.

#include <QLabel>

namespace orvesa {

/// A label for plain text. Owned by its parent.
[[nodiscard]] QLabel *makePlainLabel(const QFont &font, QWidget *parent);

void setLabelColor(QLabel &label, const QColor &color);

} // namespace orvesa
