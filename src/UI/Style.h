#pragma once

// The one place that knows spacing, radii, sizes, fonts and colours of the interface, for light and dark desktops.
//
// Lengths are device-independent pixels ("points"). Main thread only.

#include "Models/AppTheme.h"
#include "UI/TextLanguage.h"

#include <QColor>
#include <QFont>
#include <QLinearGradient>
#include <QPalette>

namespace orvesa::Style {

inline constexpr int unit = 4; ///< spacing grid
inline constexpr int spacing = 2 * unit;
inline constexpr int sectionSpacing = 10;
inline constexpr int captionSpacing = 3;
inline constexpr int contentMargin = 14;
inline constexpr int headerHeight = 44;
inline constexpr int headerEndMargin = 10;
inline constexpr int panelRadius = 12;
inline constexpr int pickerHeight = 26;
inline constexpr int pickerRadius = 7;
inline constexpr int pickerPadding = 8;
inline constexpr int controlRadius = 8;
inline constexpr int iconButtonWidth = 38;
inline constexpr int buttonHeight = 30;
inline constexpr int borderlessButtonSize = 24;
inline constexpr int closeSymbolSize = 20;
inline constexpr int symbolSize = 16;
inline constexpr int focusRingWidth = 3;
inline constexpr int cardRadius = 12;
inline constexpr int cardPadding = 16;
inline constexpr int fieldPadding = 8;
inline constexpr int tileSize = 26;
inline constexpr int tileRadius = 7;
inline constexpr int tileSymbolSize = 15;
inline constexpr int scrollBarWidth = 10;
inline constexpr int scrollBarHandleWidth = 6;
inline constexpr double disabledOpacity = 0.42;

struct Colors {
    QColor window;
    QColor line;
    QColor text;
    QColor secondaryText;
    QColor field;
    QColor fieldLine;
    QColor hover;
    QColor error;
    QColor warning;
    QColor success;
    QColor card;
    QColor border; ///< hairline around floating windows
};

enum class Appearance { light, dark };

/// Dark when the desktop's window text is lighter than its window background.
[[nodiscard]] Appearance appearance(const QPalette &palette);
[[nodiscard]] const Colors &colors(Appearance appearance);
[[nodiscard]] const Colors &colors(const QPalette &palette);

[[nodiscard]] QColor color(const SRGBColor &color);
/// White on the badge's colour is readable on every theme's sidebar.
[[nodiscard]] QColor badgeColor();
enum class Pointer { away, over };
/// What darkens a theme's gradient under the white name of a header's choice.
[[nodiscard]] QColor headerPickerTint(Pointer pointer);
/// What the settings window's widgets inherit: the interface's colours, the accent as Highlight, the accent as a text's
/// colour as Link, and secondary texts as PlaceholderText.
[[nodiscard]] QPalette palette(Appearance appearance, const QColor &accent);
/// WCAG's contrast, from 1 to 21; opaque colours.
[[nodiscard]] double contrast(const QColor &one, const QColor &other);
/// The colour itself, or as much lighter or darker as it takes to be told from the background: `ratio` is WCAG's
/// contrast, 3 for shapes and 4.5 for texts.
[[nodiscard]] QColor readable(const QColor &color, const QColor &background, double ratio);
/// From left to right over `width`.
[[nodiscard]] QLinearGradient horizontalGradient(const SRGBGradient &gradient, int width);

/// The desktop's own font in the sizes of the interface's roles, with the characters of the interface's language.
[[nodiscard]] QFont titleFont();
[[nodiscard]] QFont bodyFont();
[[nodiscard]] QFont controlFont();
[[nodiscard]] QFont statusFont();
[[nodiscard]] QFont captionFont();
[[nodiscard]] QFont pageTitleFont();
[[nodiscard]] QFont headlineFont();
/// The font itself, or as much smaller, down to `smallest` pixels, as the line needs to fit into the width.
[[nodiscard]] QFont fitting(QFont font, const QString &line, int width, int smallest);
/// The language of the interface's own texts.
[[nodiscard]] TextLanguage interfaceLanguage();
/// The font with the characters that readers of the language know, for a text of the interface.
[[nodiscard]] QFont inLanguage(QFont font, TextLanguage language);
/// The same for a text from outside.
[[nodiscard]] QFont contentFont(QFont font, TextLanguage language);

} // namespace orvesa::Style
