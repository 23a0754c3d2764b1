#include "UI/Divider.h"

#include "UI/ControlPainting.h"
#include "UI/Style.h"

#include <QPainter>

namespace orvesa {

Divider::Divider(QWidget *parent) : QWidget(parent)
{
    setFixedHeight(1);
}

void Divider::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    // One of whole pixels: at a scale of 1.5 every other divider would be twice as thick.
    const QRectF line(0, 0, width(), ControlPainting::hairline(painter));
    painter.fillRect(ControlPainting::aligned(painter, line), Style::colors(palette()).line);
}

} // namespace orvesa
