#include "UI/TextField.h"

#include "UI/ControlPainting.h"
#include "UI/Style.h"

#include <QPaintEvent>

#include <algorithm>

namespace orvesa {

namespace {
constexpr int usualWidth = 160;
constexpr int smallestWidth = 90;
constexpr int qtsOwnMargin = 2; ///< QLineEdit keeps that much between its text margins and the text
} // namespace

TextField::TextField(QWidget *parent) : QLineEdit(parent)
{
    setFrame(false);
    setFont(Style::controlFont());
    constexpr int inset = Style::focusRingWidth + Style::fieldPadding - qtsOwnMargin;
    setTextMargins(inset, 0, inset, 0);
    QPalette seeThrough;
    seeThrough.setColor(QPalette::Base, Qt::transparent);
    setPalette(seeThrough);
}

QSize TextField::sizeHint() const
{
    const int height = std::max(Style::buttonHeight, fontMetrics().height() + Style::spacing);
    return {usualWidth, height + 2 * Style::focusRingWidth};
}

QSize TextField::minimumSizeHint() const
{
    return {smallestWidth, sizeHint().height()};
}

void TextField::paintEvent(QPaintEvent *event)
{
    {
        const Style::Colors &colors = Style::colors(palette());
        const QColor accent = palette().color(QPalette::Highlight);
        const QRectF area = ControlPainting::controlArea(*this);
        QPainter painter(this);
        if (hasFocus()) {
            ControlPainting::paintFieldGlow(painter, area, Style::controlRadius, accent);
        }
        ControlPainting::paintFrame(painter, area, Style::controlRadius, colors.field,
                                    hasFocus() ? accent : colors.fieldLine);
    }
    QLineEdit::paintEvent(event);
}

} // namespace orvesa
