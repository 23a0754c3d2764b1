#include "UI/ThemeSwatch.h"

#include "UI/ControlPainting.h"
#include "UI/Style.h"

#include <QPainter>

#include <algorithm>

namespace orvesa {

namespace {
constexpr int swatchWidth = 46;
constexpr int swatchHeight = 28;
constexpr int ringRoom = 5; ///< around the swatch: a gap of two points, a ring of two, and one more for the keyboard's
constexpr int gap = 2;
constexpr qreal choiceRing = 2;
constexpr int smallestWidth = 58;
constexpr int nameGap = 2;
constexpr int smallestPixelSize = 9; ///< five long names in a large font share the row

QFont nameFont()
{
    return Style::captionFont();
}

QFont chosenNameFont()
{
    QFont font = nameFont();
    font.setWeight(QFont::DemiBold);
    return font;
}
} // namespace

ThemeSwatch::ThemeSwatch(AppTheme theme, QWidget *parent) : QRadioButton(parent), m_theme(theme)
{
    setFocusPolicy(Qt::TabFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setFont(nameFont());
}

QSize ThemeSwatch::sizeHint() const
{
    // As wide with the heavier letters of the chosen one, so that nothing moves when the choice does.
    const QFontMetrics metrics(chosenNameFont());
    return {std::max(smallestWidth, metrics.horizontalAdvance(text()) + 4),
            swatchHeight + 2 * ringRoom + nameGap + metrics.height()};
}

void ThemeSwatch::paintEvent(QPaintEvent *)
{
    const Style::Colors &colors = Style::colors(palette());
    const SRGBGradient gradient = brandGradient(m_theme);
    QPainter painter(this);
    const QRectF swatch((width() - swatchWidth) / 2.0, ringRoom, swatchWidth, swatchHeight);
    QLinearGradient fill(swatch.topLeft(), swatch.bottomRight());
    fill.setColorAt(0, Style::color(gradient.start));
    fill.setColorAt(1, Style::color(gradient.end));
    ControlPainting::paintFrame(painter, swatch, Style::controlRadius, fill, QColor(0, 0, 0, 46));
    if (isChecked() || hasFocus()) {
        QColor ring = Style::readable(Style::color(accent(m_theme)), colors.card, 3);
        if (!isChecked()) {
            ring.setAlphaF(0.45F);
        }
        const qreal width = hasFocus() ? choiceRing + 1 : choiceRing;
        const qreal distance = gap + width / 2;
        painter.setPen(QPen(ring, width));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(
            ControlPainting::aligned(painter, swatch).adjusted(-distance, -distance, distance, distance),
            Style::controlRadius + distance, Style::controlRadius + distance);
    }
    painter.setFont(Style::fitting(isChecked() ? chosenNameFont() : nameFont(), text(), width(), smallestPixelSize));
    painter.setPen(isChecked() || underMouse() ? colors.text : colors.secondaryText);
    const qreal top = swatch.bottom() + ringRoom + nameGap;
    painter.drawText(QRectF(0, top, width(), height() - top), Qt::AlignHCenter | Qt::AlignTop | Qt::TextSingleLine,
                     text());
}

bool ThemeSwatch::hitButton(const QPoint &position) const
{
    return rect().contains(position);
}

} // namespace orvesa
