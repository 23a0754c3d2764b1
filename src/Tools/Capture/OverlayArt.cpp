#include "Tools/Capture/OverlayArt.h"

#include <QFont>
#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace orvesa::OverlayArt {

using namespace Qt::StringLiterals;

namespace {

constexpr double fontPixels = 12;
constexpr double paddingAcross = 8;
constexpr double paddingDown = 4;
constexpr double radius = 6;
constexpr double armLength = 12;
constexpr double armGap = 3;

} // namespace

QImage sizeLabel(QSize size, double scale)
{
    const QString text = u"%1 \u00d7 %2"_s.arg(size.width()).arg(size.height());
    QFont font;
    font.setPixelSize(std::max(1, static_cast<int>(std::lround(fontPixels * scale))));
    font.setWeight(QFont::Medium);
    const QFontMetricsF metrics(font);
    const QSize extent(static_cast<int>(std::ceil(metrics.horizontalAdvance(text) + 2 * paddingAcross * scale)),
                       static_cast<int>(std::ceil(metrics.height() + 2 * paddingDown * scale)));
    QImage image(extent, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    // The edge is what tells the label from a black page.
    const double edge = std::max(1.0, std::round(scale));
    painter.setPen(QPen(QColor(255, 255, 255, 64), edge));
    painter.setBrush(QColor(24, 24, 28, 230));
    painter.drawRoundedRect(QRectF(QPointF(), extent).adjusted(edge / 2, edge / 2, -edge / 2, -edge / 2),
                            radius * scale, radius * scale);
    painter.setFont(font);
    painter.setPen(QColor(245, 245, 248));
    painter.drawText(QRectF(QPointF(), extent), Qt::AlignCenter, text);
    return image;
}

Crosshair crosshair(double scale)
{
    const int side = 2 * static_cast<int>(std::lround((armLength + armGap) * scale)) + 1;
    const double middle = side / 2.0;
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    // White arms with a dark edge show on any picture.
    const double thickness = std::max(1.0, std::round(scale));
    for (const auto &[width, color] :
         {std::pair(thickness + 2, QColor(0, 0, 0, 170)), std::pair(thickness, QColor(255, 255, 255))}) {
        const double grown = (width - thickness) / 2;
        const double inner = armGap * scale - grown;
        const double length = armLength * scale - 2 + 2 * grown;
        for (int quarter = 0; quarter < 4; ++quarter) {
            painter.save();
            painter.translate(middle, middle);
            painter.rotate(90.0 * quarter);
            painter.fillRect(QRectF(inner, -width / 2, length, width), color);
            painter.restore();
        }
    }
    return {image, side / 2};
}

} // namespace orvesa::OverlayArt
