#include "UI/Style.h"

#include "Core/Localization.h"
#include "UI/FontFamilies.h"

#include <QFontInfo>
#include <QFontMetrics>
#include <QGuiApplication>

#include <algorithm>
#include <cmath>

namespace orvesa::Style {

namespace {

const Colors &lightColors()
{
    static const Colors colors{
        .window = QColor(0xff, 0xff, 0xff),
        .line = QColor(0xe3, 0xe3, 0xe8),
        .text = QColor(0x1d, 0x1d, 0x1f),
        .secondaryText = QColor(0x6b, 0x6b, 0x73),
        .field = QColor(0xff, 0xff, 0xff),
        .fieldLine = QColor(0xd2, 0xd2, 0xd8),
        .hover = QColor(0xec, 0xec, 0xf1),
        .error = QColor(0xc8, 0x32, 0x2b),
        .warning = QColor(0xa8, 0x5b, 0x00),
        .success = QColor(0x1a, 0x80, 0x45),
        .card = QColor(0xf7, 0xf7, 0xf9),
        .border = QColor(0, 0, 0, 38),
    };
    return colors;
}

const Colors &darkColors()
{
    static const Colors colors{
        .window = QColor(0x1f, 0x1f, 0x22),
        .line = QColor(0x38, 0x38, 0x3d),
        .text = QColor(0xf2, 0xf2, 0xf4),
        .secondaryText = QColor(0xa2, 0xa2, 0xab),
        .field = QColor(0x1a, 0x1a, 0x1d),
        .fieldLine = QColor(0x47, 0x47, 0x4e),
        .hover = QColor(0x32, 0x32, 0x37),
        .error = QColor(0xff, 0x7a, 0x72),
        .warning = QColor(0xff, 0xb2, 0x57),
        .success = QColor(0x54, 0xd0, 0x8a),
        .card = QColor(0x29, 0x29, 0x2d),
        .border = QColor(255, 255, 255, 36),
    };
    return colors;
}

/// The family that the desktop's font stands for ("Sans" is none).
QString desktopFamily()
{
    return QFontInfo(QGuiApplication::font()).family();
}

/// The desktop's font, `difference` pixels larger than the size that the desktop uses for its controls.
QFont desktopFont(int difference, int smallest)
{
    QFont font = QGuiApplication::font();
    font.setPixelSize(std::max(QFontInfo(font).pixelSize() + difference, smallest));
    return inLanguage(font, interfaceLanguage());
}

/// WCAG's relative luminance.
double luminance(const QColor &color)
{
    const auto linear = [](float component) {
        const auto value = static_cast<double>(component);
        return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

QColor mixed(const QColor &from, const QColor &to, float share)
{
    const auto mix = [share](float one, float other) { return one + (other - one) * share; };
    return QColor::fromRgbF(mix(from.redF(), to.redF()), mix(from.greenF(), to.greenF()),
                            mix(from.blueF(), to.blueF()));
}

} // namespace

Appearance appearance(const QPalette &palette)
{
    const bool dark = palette.color(QPalette::Active, QPalette::WindowText).lightnessF() >
                      palette.color(QPalette::Active, QPalette::Window).lightnessF();
    return dark ? Appearance::dark : Appearance::light;
}

const Colors &colors(Appearance appearance)
{
    return appearance == Appearance::dark ? darkColors() : lightColors();
}

const Colors &colors(const QPalette &palette)
{
    return colors(appearance(palette));
}

QColor color(const SRGBColor &color)
{
    return QColor::fromRgbF(static_cast<float>(color.red), static_cast<float>(color.green),
                            static_cast<float>(color.blue));
}

QColor badgeColor()
{
    return {0xd3, 0x40, 0x2c};
}

QColor headerPickerTint(Pointer pointer)
{
    return {0, 0, 0, pointer == Pointer::over ? 92 : 68};
}

QPalette palette(Appearance appearance, const QColor &accent)
{
    const Colors &shown = colors(appearance);
    QPalette result(shown.card, shown.window);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        result.setColor(role, shown.text);
    }
    result.setColor(QPalette::Base, shown.field);
    result.setColor(QPalette::AlternateBase, shown.hover);
    result.setColor(QPalette::PlaceholderText, shown.secondaryText);
    result.setColor(QPalette::Highlight, readable(accent, shown.card, 3));
    result.setColor(QPalette::HighlightedText, Qt::white);
    result.setColor(QPalette::Link, readable(accent, shown.card, 4.5));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        result.setColor(QPalette::Disabled, role, shown.secondaryText);
    }
    return result;
}

double contrast(const QColor &one, const QColor &other)
{
    const double first = luminance(one);
    const double second = luminance(other);
    return (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05);
}

QColor readable(const QColor &color, const QColor &background, double ratio)
{
    constexpr float step = 0.05F;
    const QColor target = luminance(background) > 0.18 ? Qt::black : Qt::white;
    QColor result = color;
    for (float share = step; contrast(result, background) < ratio && share < 1; share += step) {
        result = mixed(color, target, share);
    }
    return result;
}

QLinearGradient horizontalGradient(const SRGBGradient &gradient, int width)
{
    QLinearGradient result(0, 0, width, 0);
    result.setColorAt(0, color(gradient.start));
    result.setColorAt(1, color(gradient.end));
    return result;
}

QFont titleFont()
{
    QFont font = desktopFont(1, 14);
    font.setWeight(QFont::DemiBold);
    return font;
}

QFont bodyFont()
{
    return contentFont(desktopFont(1, 14), interfaceLanguage());
}

QFont controlFont()
{
    return desktopFont(0, 13);
}

QFont statusFont()
{
    return desktopFont(-1, 12);
}

QFont captionFont()
{
    return desktopFont(-2, 11);
}

QFont pageTitleFont()
{
    QFont font = desktopFont(8, 21);
    font.setWeight(QFont::Bold);
    return font;
}

QFont headlineFont()
{
    QFont font = controlFont();
    font.setWeight(QFont::DemiBold);
    return font;
}

QFont fitting(QFont font, const QString &line, int width, int smallest)
{
    // The advance is rounded, and what elides a line is not.
    while (font.pixelSize() > smallest && QFontMetrics(font).horizontalAdvance(line) >= width) {
        font.setPixelSize(font.pixelSize() - 1);
    }
    return font;
}

TextLanguage interfaceLanguage()
{
    return textLanguage(Localization::current());
}

QFont inLanguage(QFont font, TextLanguage language)
{
    font.setFamilies(FontFamilies::forInterface(desktopFamily(), language));
    return font;
}

QFont contentFont(QFont font, TextLanguage language)
{
    font.setFamilies(FontFamilies::forContent(desktopFamily(), language));
    return font;
}

} // namespace orvesa::Style
