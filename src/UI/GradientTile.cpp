#include "UI/GradientTile.h"

#include "UI/ControlPainting.h"
#include "UI/Style.h"
#include "UI/Symbols.h"

namespace orvesa {

GradientTile::GradientTile(QString symbol, const SRGBGradient &gradient, QWidget *parent)
    : QWidget(parent), m_symbol(std::move(symbol)), m_gradient(gradient)
{
    setFixedSize(Style::tileSize, Style::tileSize);
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void GradientTile::paint(QPainter &painter, const QRectF &area, const QString &symbol, const SRGBGradient &gradient)
{
    const QRectF tile = ControlPainting::aligned(painter, area);
    QLinearGradient fill(tile.topLeft(), tile.bottomRight());
    fill.setColorAt(0, Style::color(gradient.start));
    fill.setColorAt(1, Style::color(gradient.end));
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill);
    painter.drawRoundedRect(tile, Style::tileRadius, Style::tileRadius);
    const qreal half = Style::tileSymbolSize / 2.0;
    painter.drawPixmap(
        ControlPainting::aligned(painter, QRectF(tile.center() - QPointF(half, half), QSizeF(2 * half, 2 * half)))
            .topLeft(),
        Symbols::pixmap(symbol, Qt::white, Style::tileSymbolSize, painter.device()->devicePixelRatioF()));
}

void GradientTile::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    paint(painter, rect(), m_symbol, m_gradient);
}

} // namespace orvesa
