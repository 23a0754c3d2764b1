#include "UI/Style.h"

#include <QFontInfo>
#include <QGuiApplication>

#include <algorithm>

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
        .success = QColor(0x1f, 0x8a, 0x4c),
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
        .success = QColor(0x54, 0xd0, 0x8a),
        .border = QColor(255, 255, 255, 36),
    };
    return colors;
}

/// The desktop's font, `difference` pixels larger than the size that the desktop uses for its controls.
QFont desktopFont(int difference, int smallest)
{
    QFont font = QGuiApplication::font();
    font.setPixelSize(std::max(QFontInfo(font).pixelSize() + difference, smallest));
    return font;
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
    return desktopFont(1, 14);
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

} // namespace orvesa::Style
