#include "UI/HeaderPicker.h"

#include "UI/AccessiblePicker.h"
#include "UI/ControlPainting.h"
#include "UI/Style.h"
#include "UI/Symbols.h"

#include <QPainter>
#include <QWheelEvent>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace orvesa {

namespace {
constexpr int chevronSize = 10;
constexpr int chevronGap = 6;
constexpr int largestPixelSize = 13;
constexpr int ringOutset = 2; ///< room around the pill for the focus ring
} // namespace

HeaderPicker::HeaderPicker(QWidget *parent) : QComboBox(parent)
{
    AccessiblePicker::install();
    setFocusPolicy(Qt::TabFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    // The header is as high as it is: in a larger font the choice would leave its title no room.
    QFont font = Style::statusFont();
    font.setPixelSize(std::min(font.pixelSize(), largestPixelSize));
    setFont(font);
}

QSize HeaderPicker::sizeHint() const
{
    int widest = 0;
    for (int index = 0; index < count(); ++index) {
        widest = std::max(widest, fontMetrics().horizontalAdvance(itemText(index)));
    }
    return {widest + 2 * Style::pickerPadding + chevronGap + chevronSize + 2 * ringOutset,
            Style::pickerHeight + 2 * ringOutset};
}

void HeaderPicker::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF pill = QRectF(rect()).adjusted(ringOutset, ringOutset, -ringOutset, -ringOutset);
    if (hasFocus()) {
        painter.setPen(QPen(QColor(255, 255, 255, 205), 2));
        painter.drawRoundedRect(pill.adjusted(-1, -1, 1, 1), Style::pickerRadius + 1, Style::pickerRadius + 1);
    }
    painter.setPen(QPen(QColor(255, 255, 255, 89), 1));
    painter.setBrush(Style::headerPickerTint(underMouse() ? Style::Pointer::over : Style::Pointer::away));
    painter.drawRoundedRect(pill.adjusted(0.5, 0.5, -0.5, -0.5), Style::pickerRadius, Style::pickerRadius);

    const QRectF textArea = pill.adjusted(Style::pickerPadding, 0, -Style::pickerPadding - chevronSize, 0);
    ControlPainting::drawTextOnGradient(painter, textArea, currentText());
    painter.drawPixmap(
        QPointF(pill.right() - Style::pickerPadding - chevronSize, pill.center().y() - chevronSize / 2.0),
        Symbols::pixmap(u"chevron.down"_s, Qt::white, chevronSize, devicePixelRatioF()));
}

void HeaderPicker::wheelEvent(QWheelEvent *event)
{
    // A wheel turn over the header must not start a request by accident.
    event->ignore();
}

} // namespace orvesa
