#pragma once

// How a drawn picture of text looks: its font, size, density and colours. Values and pure functions; main thread.

#include <QColor>
#include <QFont>
#include <QString>

namespace orvesa::benchmark {

struct SampleText;

struct SampleLook {
    enum class Smoothing { gray, subpixel };

    QFont font; ///< at the density's size
    QColor paper;
    QColor ink;
    QColor accent;
    double scale = 1;
    Smoothing smoothing = Smoothing::gray;
};

/// One of the looks of a fixed order: the same in every run.
[[nodiscard]] SampleLook orderedLook(const SampleText &text, int variant);
/// Any font, size, density and colours that a screen may show, by a seed.
[[nodiscard]] SampleLook randomLook(const SampleText &text, quint32 seed);

} // namespace orvesa::benchmark
