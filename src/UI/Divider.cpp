#include "UI/Divider.h"

#include "UI/Style.h"

#include <QPainter>

namespace orvesa {

Divider::Divider(QWidget *parent) : QWidget(parent)
{
    setFixedHeight(1);
}

void Divider::paintEvent(QPaintEvent *)
{
    QPainter(this).fillRect(rect(), Style::colors(palette()).line);
}

} // namespace orvesa
