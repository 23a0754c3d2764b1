#include "UI/WrappingLabel.h"

#include <QPainter>
#include <QTextLayout>

#include <algorithm>
#include <cmath>

namespace orvesa {

namespace {
constexpr int smallestWidth = 80;
constexpr int usualWidth = 280;
} // namespace

WrappingLabel::WrappingLabel(const QFont &font, QWidget *parent) : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    setFont(font);
    setWordWrap(true);
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

qreal WrappingLabel::breakLines(QTextLayout &layout, qreal width) const
{
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    option.setTextDirection(layoutDirection());
    layout.setTextOption(option);
    qreal height = 0;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        line.setPosition({0, height});
        height += line.height();
    }
    layout.endLayout();
    return height;
}

QSize WrappingLabel::sizeHint() const
{
    const int width = std::min(usualWidth, fontMetrics().horizontalAdvance(text()) + 1);
    return {width, heightForWidth(width)};
}

QSize WrappingLabel::minimumSizeHint() const
{
    return {std::min(smallestWidth, sizeHint().width()), fontMetrics().height()};
}

int WrappingLabel::heightForWidth(int width) const
{
    QTextLayout layout(QString(text()).replace(u'\n', QChar::LineSeparator), font());
    return std::max(fontMetrics().height(), static_cast<int>(std::ceil(breakLines(layout, width))));
}

void WrappingLabel::paintEvent(QPaintEvent *)
{
    QTextLayout layout(QString(text()).replace(u'\n', QChar::LineSeparator), font());
    breakLines(layout, width());
    QPainter painter(this);
    painter.setPen(palette().color(foregroundRole()));
    layout.draw(&painter, {0, 0});
}

} // namespace orvesa
