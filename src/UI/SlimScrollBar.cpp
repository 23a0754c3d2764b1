#include "UI/SlimScrollBar.h"

#include "UI/Style.h"

#include <QPainter>
#include <QStyle>
#include <QStyleOptionSlider>

namespace orvesa {

namespace {
constexpr qreal restingOpacity = 0.45;
constexpr qreal activeOpacity = 0.8;
} // namespace

SlimScrollBar::SlimScrollBar(QWidget *parent) : QScrollBar(Qt::Vertical, parent)
{
    setFocusPolicy(Qt::NoFocus);
}

QSize SlimScrollBar::sizeHint() const
{
    return {Style::scrollBarWidth, QScrollBar::sizeHint().height()};
}

void SlimScrollBar::paintEvent(QPaintEvent *)
{
    QStyleOptionSlider option;
    initStyleOption(&option);
    const QRectF handle = style()->subControlRect(QStyle::CC_ScrollBar, &option, QStyle::SC_ScrollBarSlider, this);
    const QRectF bar(width() - Style::scrollBarHandleWidth, handle.y(), Style::scrollBarHandleWidth, handle.height());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(underMouse() || isSliderDown() ? activeOpacity : restingOpacity);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Style::colors(palette()).secondaryText);
    painter.drawRoundedRect(bar, bar.width() / 2, bar.width() / 2);
}

void SlimScrollBar::enterEvent(QEnterEvent *event)
{
    update();
    QScrollBar::enterEvent(event);
}

void SlimScrollBar::leaveEvent(QEvent *event)
{
    update();
    QScrollBar::leaveEvent(event);
}

} // namespace orvesa
