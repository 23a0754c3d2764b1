#include "UI/LinkButton.h"

#include "UI/ControlPainting.h"
#include "UI/Style.h"
#include "UI/Symbols.h"

#include <QKeyEvent>
#include <QPainter>

namespace orvesa {

namespace {
constexpr int padding = 2;
constexpr int symbolSize = 12;
constexpr int symbolGap = 4;
constexpr int ringRadius = 4;
} // namespace

LinkButton::LinkButton(QString symbol, QWidget *parent) : QAbstractButton(parent), m_symbol(std::move(symbol))
{
    setFocusPolicy(Qt::TabFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setFont(Style::statusFont());
    setCursor(Qt::PointingHandCursor);
}

QSize LinkButton::sizeHint() const
{
    constexpr int outset = Style::focusRingWidth + padding;
    return {fontMetrics().horizontalAdvance(text()) + symbolGap + symbolSize + 2 * outset,
            fontMetrics().height() + 2 * outset};
}

void LinkButton::paintEvent(QPaintEvent *)
{
    const QRectF area = ControlPainting::controlArea(*this);
    QColor ink = palette().color(QPalette::Link);
    if (isDown()) {
        ink = ink.darker(125);
    }
    QPainter painter(this);
    if (hasFocus()) {
        ControlPainting::paintFocusRing(painter, area, ringRadius, palette().color(QPalette::Highlight));
    }
    QFont shown = font();
    shown.setUnderline(underMouse());
    painter.setFont(shown);
    painter.setPen(ink);
    const int textWidth = fontMetrics().horizontalAdvance(text());
    const QRectF inner = area.adjusted(padding, 0, -padding, 0);
    painter.drawText(QRectF(inner.left(), inner.top(), textWidth + 1, inner.height()),
                     Qt::AlignVCenter | Qt::TextSingleLine, text());
    painter.drawPixmap(QPointF(inner.left() + textWidth + symbolGap, inner.center().y() - symbolSize / 2.0),
                       Symbols::pixmap(m_symbol, ink, symbolSize, devicePixelRatioF()));
}

void LinkButton::keyPressEvent(QKeyEvent *event)
{
    if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && !event->isAutoRepeat()) {
        click();
        return;
    }
    QAbstractButton::keyPressEvent(event);
}

void LinkButton::enterEvent(QEnterEvent *event)
{
    update();
    QAbstractButton::enterEvent(event);
}

void LinkButton::leaveEvent(QEvent *event)
{
    update();
    QAbstractButton::leaveEvent(event);
}

} // namespace orvesa
