#include "UI/Picker.h"

#include "UI/ControlPainting.h"
#include "UI/Style.h"
#include "UI/Symbols.h"

#include <QKeyEvent>
#include <QPainter>
#include <QWheelEvent>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace orvesa {

namespace {
constexpr int smallestWidth = 178;
constexpr int padding = 10;
constexpr int chevronSize = 11;
constexpr int chevronGap = 12;
} // namespace

Picker::Picker(QWidget *parent) : QComboBox(parent)
{
    setFocusPolicy(Qt::TabFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setFont(Style::controlFont());
}

void Picker::setChoices(const QStringList &choices, int current, const QList<TextLanguage> &languages)
{
    m_languages = languages;
    if (choices != m_choices) {
        m_choices = choices;
        clear();
        addItems(choices);
        updateGeometry();
    }
    // The same names are drawn in other shapes once the interface is in another language.
    for (int index = 0; index < count(); ++index) {
        setItemData(index, choiceFont(index), Qt::FontRole);
    }
    setCurrentIndex(current);
}

/// Each name in the shapes of its own language: the list of languages shows all of them.
QFont Picker::choiceFont(int index) const
{
    const TextLanguage language = index >= 0 && index < m_languages.size()
                                      ? m_languages[index]
                                      : textLanguage(m_choices.value(index), Style::interfaceLanguage());
    return Style::inLanguage(font(), language);
}

QSize Picker::sizeHint() const
{
    constexpr int outset = Style::focusRingWidth;
    constexpr int around = 2 * padding + chevronGap + chevronSize;
    // No character is wider than a line is high. A short name fits without being measured, which would load the fonts
    // of every language in the list.
    const int square = fontMetrics().height();
    int widest = smallestWidth - around;
    for (int index = 0; index < count(); ++index) {
        const QString name = itemText(index);
        if (name.size() * square > widest) {
            widest = std::max(widest, QFontMetrics(choiceFont(index)).horizontalAdvance(name));
        }
    }
    const int width = widest + around;
    return {width + 2 * outset, Style::buttonHeight + 2 * outset};
}

void Picker::paintEvent(QPaintEvent *)
{
    const Style::Colors &colors = Style::colors(palette());
    const QRectF area = ControlPainting::controlArea(*this);
    QPainter painter(this);
    painter.setOpacity(isEnabled() ? 1 : Style::disabledOpacity);
    if (hasFocus()) {
        ControlPainting::paintFocusRing(painter, area, Style::controlRadius, palette().color(QPalette::Highlight));
    }
    ControlPainting::paintFrame(painter, area, Style::controlRadius, underMouse() ? colors.hover : colors.field,
                                colors.fieldLine);
    painter.setPen(colors.text);
    painter.setFont(choiceFont(currentIndex()));
    const QRectF inner = area.adjusted(padding, 0, -padding, 0);
    painter.drawText(inner.adjusted(0, 0, -chevronGap - chevronSize + 1, 0),
                     Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine, currentText());
    painter.drawPixmap(QPointF(inner.right() - chevronSize, inner.center().y() - chevronSize / 2.0),
                       Symbols::pixmap(u"chevron.down"_s, colors.secondaryText, chevronSize, devicePixelRatioF()));
}

void Picker::keyPressEvent(QKeyEvent *event)
{
    if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && !event->isAutoRepeat()) {
        showPopup();
        return;
    }
    QComboBox::keyPressEvent(event);
}

void Picker::wheelEvent(QWheelEvent *event)
{
    event->ignore();
}

} // namespace orvesa
