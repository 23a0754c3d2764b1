#include "UI/TextButton.h"

#include "UI/ControlPainting.h"
#include "UI/Style.h"
#include "UI/Symbols.h"

#include <QKeyEvent>
#include <QPainter>

namespace orvesa {

namespace {
constexpr int horizontalPadding = 10;
constexpr int symbolSize = 13;
constexpr int symbolGap = 6;
} // namespace

TextButton::TextButton(Look look, QWidget *parent, QString symbol)
    : QPushButton(parent), m_look(look), m_symbol(std::move(symbol))
{
    setFocusPolicy(Qt::TabFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setFont(look == Look::prominent ? Style::headlineFont() : Style::controlFont());
}

QSize TextButton::sizeHint() const
{
    constexpr int outset = Style::focusRingWidth;
    const int symbol = m_symbol.isEmpty() ? 0 : symbolSize + symbolGap;
    const int height = std::max(Style::buttonHeight, fontMetrics().height() + Style::spacing);
    return {fontMetrics().horizontalAdvance(text()) + symbol + 2 * (horizontalPadding + outset), height + 2 * outset};
}

void TextButton::paintEvent(QPaintEvent *)
{
    const Style::Colors &colors = Style::colors(palette());
    const QColor accent = palette().color(QPalette::Highlight);
    const bool prominent = m_look == Look::prominent;
    const QRectF area = ControlPainting::controlArea(*this);
    QPainter painter(this);
    painter.setOpacity(isEnabled() ? 1 : Style::disabledOpacity);
    if (hasFocus()) {
        ControlPainting::paintFocusRing(painter, area, Style::controlRadius, accent);
    }
    QColor fill = prominent ? accent : colors.field;
    if (isDown()) {
        fill = prominent ? fill.darker(118) : colors.line;
    } else if (underMouse() && isEnabled()) {
        fill = prominent ? fill.darker(108) : colors.hover;
    }
    ControlPainting::paintFrame(painter, area, Style::controlRadius, fill, prominent ? fill : colors.fieldLine);

    const QColor ink = prominent ? QColor(Qt::white) : colors.text;
    const int textWidth = fontMetrics().horizontalAdvance(text());
    const int symbolWidth = m_symbol.isEmpty() ? 0 : symbolSize + symbolGap;
    qreal left = area.center().x() - (textWidth + symbolWidth) / 2.0;
    if (!m_symbol.isEmpty()) {
        painter.drawPixmap(QPointF(left, area.center().y() - symbolSize / 2.0),
                           Symbols::pixmap(m_symbol, ink, symbolSize, devicePixelRatioF()));
        left += symbolWidth;
    }
    painter.setPen(ink);
    painter.drawText(QRectF(left, area.top(), textWidth + 1, area.height()), Qt::AlignVCenter | Qt::TextSingleLine,
                     text());
}

void TextButton::keyPressEvent(QKeyEvent *event)
{
    if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && !event->isAutoRepeat()) {
        click();
        return;
    }
    QPushButton::keyPressEvent(event);
}

void TextButton::enterEvent(QEnterEvent *event)
{
    update();
    QPushButton::enterEvent(event);
}

void TextButton::leaveEvent(QEvent *event)
{
    update();
    QPushButton::leaveEvent(event);
}

} // namespace orvesa
