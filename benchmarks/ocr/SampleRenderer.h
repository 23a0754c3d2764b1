#pragma once

// Draws pictures of text as they come up on screens. Needs a QGuiApplication; main thread.

#include "ocr/SampleLook.h"

#include <QImage>
#include <QString>
#include <QStringList>

namespace orvesa::benchmark {

struct SampleText {
    QString language; ///< en, ja, zh, mixja, mixzh, vja, vzh
    QString kind;     ///< para, label, code, term, lines, table, dialog, menu, form, chat, 2col, vertical, photo
    QStringList lines;
};

struct RenderedSample {
    QImage image;
    QString reference; ///< in the order in which a person reads
    QString font;
    int pixels = 0; ///< font size, before the density
    double scale = 1;
    bool dark = false;
};

/// `variant` turns and grains what is drawn as a photograph.
[[nodiscard]] RenderedSample renderSample(const SampleText &text, const SampleLook &look, int variant);

} // namespace orvesa::benchmark
