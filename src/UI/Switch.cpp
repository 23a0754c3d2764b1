#include "UI/Switch.h"

#include "UI/ControlPainting.h"
#include "UI/Style.h"

#include <QKeyEvent>
#include <QPainter>

namespace orvesa {

namespace {
constexpr int trackWidth = 38;
constexpr int trackHeight = 22;
constexpr int knobInset = 2;
constexpr int knobShadow = 60; ///< opacity of 255
} // namespace

Switch::Switch(QWidget *parent) : QCheckBox(parent)
{
    setFocusPolicy(Qt::TabFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize Switch::sizeHint() const
{
    constexpr int outset = Style::focusRingWidth;
    return {trackWidth + 2 * outset, trackHeight + 2 * outset};
}

void Switch::paintEvent(QPaintEvent *)
{
    const Style::Colors &colors = Style::colors(palette());
    const QColor accent = palette().color(QPalette::Highlight);
    const QRectF track = ControlPainting::controlArea(*this);
    const qreal radius = track.height() / 2;
    QPainter painter(this);
    painter.setOpacity(isEnabled() ? 1 : Style::disabledOpacity);
    if (hasFocus()) {
        ControlPainting::paintFocusRing(painter, track, radius, accent);
    }
    // Off and on differ in more than colour: the knob's place.
    const QColor off = Style::readable(colors.fieldLine, colors.card, 1.6);
    const QColor fill = isChecked() ? accent : off;
    ControlPainting::paintFrame(painter, track, radius, isDown() ? fill.darker(112) : fill, fill);
    const qreal size = track.height() - 2 * knobInset;
    const qreal left = isChecked() ? track.right() - knobInset - size : track.left() + knobInset;
    const QRectF knob(left, track.top() + knobInset, size, size);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0, 0, 0, knobShadow));
    painter.drawEllipse(knob.translated(0, 0.75));
    painter.setBrush(Qt::white);
    painter.drawEllipse(knob);
}

void Switch::keyPressEvent(QKeyEvent *event)
{
    if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && !event->isAutoRepeat()) {
        click();
        return;
    }
    QCheckBox::keyPressEvent(event);
}

bool Switch::hitButton(const QPoint &position) const
{
    return rect().contains(position);
}

} // namespace orvesa
