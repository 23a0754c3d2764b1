#include "UI/ControlPainting.h"

#include "UI/Style.h"

#include <QWidget>

#include <algorithm>
#include <array>
#include <cmath>

namespace orvesa::ControlPainting {

namespace {
constexpr float glowOpacity = 0.55F;
} // namespace

QRectF controlArea(const QWidget &widget)
{
    constexpr int outset = Style::focusRingWidth;
    return QRectF(widget.rect()).adjusted(outset, outset, -outset, -outset);
}

QRectF aligned(const QPainter &painter, const QRectF &area)
{
    const QTransform toDevice = painter.deviceTransform();
    const QRectF device = toDevice.mapRect(area);
    const QRectF rounded(QPointF(std::round(device.left()), std::round(device.top())),
                         QPointF(std::round(device.right()), std::round(device.bottom())));
    return toDevice.inverted().mapRect(rounded);
}

qreal hairline(const QPainter &painter)
{
    const qreal ratio = painter.device()->devicePixelRatioF();
    return std::max(1.0, std::floor(ratio)) / ratio;
}

void paintFrame(QPainter &painter, const QRectF &area, qreal radius, const QBrush &fill, const QColor &line)
{
    const qreal width = hairline(painter);
    const qreal half = width / 2;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(line, width));
    painter.setBrush(fill);
    painter.drawRoundedRect(aligned(painter, area).adjusted(half, half, -half, -half), radius - half, radius - half);
}

void paintFocusRing(QPainter &painter, const QRectF &area, qreal radius, const QColor &accent)
{
    constexpr qreal width = Style::focusRingWidth - 1;
    constexpr qreal distance = 1 + width / 2;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(accent, width));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(aligned(painter, area).adjusted(-distance, -distance, distance, distance),
                            radius + distance, radius + distance);
}

void paintFieldGlow(QPainter &painter, const QRectF &area, qreal radius, const QColor &accent)
{
    constexpr qreal half = Style::focusRingWidth / 2.0;
    QColor glow = accent;
    glow.setAlphaF(glowOpacity);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(glow, Style::focusRingWidth));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(aligned(painter, area).adjusted(-half, -half, half, half), radius + half, radius + half);
}

void drawTextOnGradient(QPainter &painter, const QRectF &area, const QString &line)
{
    // Around the text and a point below it: a blur for the price of a few glyphs.
    struct Layer {
        QPointF offset;
        int opacity;
    };
    constexpr std::array shadow{Layer{{-1, 1}, 24},    Layer{{1, 1}, 24},    Layer{{0, 2}, 24}, Layer{{0, -0.75}, 24},
                                Layer{{-0.75, 0}, 34}, Layer{{0.75, 0}, 34}, Layer{{0, 1}, 76}};
    constexpr int flags = Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine;
    for (const Layer &layer : shadow) {
        painter.setPen(QColor(0, 0, 0, layer.opacity));
        painter.drawText(area.translated(layer.offset), flags, line);
    }
    painter.setPen(Qt::white);
    painter.drawText(area, flags, line);
}

} // namespace orvesa::ControlPainting
