#pragma once

// Draws pictures of text as they come up on screens: fonts, sizes, densities and colours change from one to the next by
// a fixed order, so that every run draws the same ones. Needs a QGuiApplication; main thread.

#include <QColor>
#include <QFont>
#include <QImage>
#include <QString>
#include <QStringList>

namespace orvesa::benchmark {

struct SampleText {
    QString language; ///< en, ja, zh, mixja, mixzh, vja, vzh
    QString kind;     ///< para, label, code, term, lines, table, dialog, 2col, vertical, photo
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

/// `variant` picks looks: the same text in other variants looks otherwise.
[[nodiscard]] RenderedSample renderSample(const SampleText &text, int variant);

} // namespace orvesa::benchmark
