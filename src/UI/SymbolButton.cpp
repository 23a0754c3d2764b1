#include "UI/SymbolButton.h"

#include "UI/Symbols.h"

#include <QKeyEvent>
#include <QPainter>

namespace orvesa {

namespace {
/// What can be told from its surroundings, as WCAG counts it.
constexpr double leastRingContrast = 3;
} // namespace

SymbolButton::SymbolButton(QString symbol, Look look, QWidget *parent)
    : QAbstractButton(parent), m_symbol(std::move(symbol)), m_look(look)
{
    setFocusPolicy(Qt::TabFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void SymbolButton::setDescription(const QString &text)
{
    // Screen readers hear of every assignment, also of an equal text.
    if (text != accessibleName()) {
        setToolTip(text);
        setAccessibleName(text);
    }
}

void SymbolButton::setAccent(const QColor &accent)
{
    m_accent = accent;
    update();
}

void SymbolButton::setSymbolOpacity(qreal opacity)
{
    m_symbolOpacity = opacity;
    update();
}

QSize SymbolButton::sizeHint() const
{
    QSize button(Style::iconButtonWidth, Style::buttonHeight);
    if (m_look == Look::plain) {
        button = QSize(Style::closeSymbolSize, Style::closeSymbolSize);
    } else if (m_look == Look::borderless) {
        button = QSize(Style::borderlessButtonSize, Style::borderlessButtonSize);
    }
    return button + QSize(2 * outset(), 2 * outset());
}

void SymbolButton::enterEvent(QEnterEvent *event)
{
    update();
    QAbstractButton::enterEvent(event);
}

void SymbolButton::leaveEvent(QEvent *event)
{
    update();
    QAbstractButton::leaveEvent(event);
}

void SymbolButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(isEnabled() ? 1 : Style::disabledOpacity);
    const QRectF button = QRectF(rect()).adjusted(outset(), outset(), -outset(), -outset());
    if (hasFocus()) {
        // A point apart from the button, which may have the same colour.
        constexpr qreal width = Style::focusRingWidth - 1;
        constexpr qreal distance = 1 + width / 2;
        const QColor accent = m_accent.isValid() ? m_accent : palette().color(QPalette::Highlight);
        const QColor ring = m_look == Look::plain
                                ? QColor(Qt::white)
                                : Style::readable(accent, Style::colors(palette()).window, leastRingContrast);
        painter.setPen(QPen(ring, width));
        const qreal radius = (m_look == Look::plain ? button.width() / 2 : Style::controlRadius) + distance;
        painter.drawRoundedRect(button.adjusted(-distance, -distance, distance, distance), radius, radius);
    }
    if (m_look == Look::plain) {
        paintPlain(painter, button);
    } else if (m_look == Look::borderless) {
        paintBorderless(painter, button);
    } else {
        paintFramed(painter, button);
    }
}

void SymbolButton::paintPlain(QPainter &painter, const QRectF &button) const
{
    QColor color(Qt::white);
    color.setAlphaF(isDown() || underMouse() ? 1.0F : 0.88F);
    painter.drawPixmap(button.topLeft(),
                       Symbols::pixmap(m_symbol, color, static_cast<int>(button.width()), devicePixelRatioF()));
}

void SymbolButton::paintBorderless(QPainter &painter, const QRectF &button) const
{
    const Style::Colors &colors = Style::colors(palette());
    if (isEnabled() && (isDown() || underMouse())) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(isDown() ? colors.line : colors.hover);
        painter.drawRoundedRect(button, Style::controlRadius, Style::controlRadius);
    }
    painter.setOpacity(painter.opacity() * m_symbolOpacity);
    const QPointF origin(button.center().x() - Style::symbolSize / 2.0, button.center().y() - Style::symbolSize / 2.0);
    painter.drawPixmap(origin, Symbols::pixmap(m_symbol, colors.secondaryText, Style::symbolSize, devicePixelRatioF()));
}

void SymbolButton::keyPressEvent(QKeyEvent *event)
{
    if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && !event->isAutoRepeat()) {
        click();
        return;
    }
    QAbstractButton::keyPressEvent(event);
}

void SymbolButton::paintFramed(QPainter &painter, const QRectF &button) const
{
    const Style::Colors &colors = Style::colors(palette());
    const bool prominent = m_look == Look::prominent;
    QColor fill = prominent ? m_accent : colors.field;
    if (isDown()) {
        fill = prominent ? fill.darker(118) : colors.line;
    } else if (underMouse() && isEnabled()) {
        fill = prominent ? fill.lighter(108) : colors.hover;
    }
    painter.setPen(QPen(prominent ? fill : colors.fieldLine, 1));
    painter.setBrush(fill);
    painter.drawRoundedRect(button.adjusted(0.5, 0.5, -0.5, -0.5), Style::controlRadius, Style::controlRadius);
    const QPointF origin(button.center().x() - Style::symbolSize / 2.0, button.center().y() - Style::symbolSize / 2.0);
    painter.drawPixmap(origin, Symbols::pixmap(m_symbol, prominent ? QColor(Qt::white) : colors.text, Style::symbolSize,
                                               devicePixelRatioF()));
}

} // namespace orvesa
