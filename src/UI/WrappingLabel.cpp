#include "UI/WrappingLabel.h"

#include <QPainter>
#include <QTextLayout>

#include <algorithm>
#include <cmath>

namespace orvesa {

namespace {
constexpr int smallestWidth = 80;
constexpr int usualWidth = 280;
constexpr qreal shortestLastLine = 0.2; ///< of the width
constexpr int mostSettledLines = 6;     ///< of a service's long answer nobody minds the last one

/// Whether the last line is one because the text says so.
bool endsInLineOfItsOwn(const QTextLayout &layout)
{
    const int start = layout.lineAt(layout.lineCount() - 1).textStart();
    return start > 0 && layout.text().at(start - 1) == QChar::LineSeparator;
}
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

/// Where a last line of a word or a character would stand alone, the lines before it give it some of theirs. Their
/// number, and so the height, stays.
void WrappingLabel::setLines(QTextLayout &layout, qreal width) const
{
    breakLines(layout, width);
    const int count = layout.lineCount();
    if (count < 2 || count > mostSettledLines || endsInLineOfItsOwn(layout)) {
        return;
    }
    const auto lastWidth = [&layout] { return layout.lineAt(layout.lineCount() - 1).naturalTextWidth(); };
    const qreal alone = lastWidth();
    const qreal step = std::max(1, fontMetrics().averageCharWidth());
    qreal fitting = width;
    while (lastWidth() < width * shortestLastLine && fitting - step > width / 2) {
        breakLines(layout, fitting - step);
        if (layout.lineCount() > count) {
            breakLines(layout, fitting);
            break;
        }
        fitting -= step;
    }
    if (fitting < width && lastWidth() <= alone) {
        breakLines(layout, width); // narrower lines had nothing to give it
    }
}

QStringList WrappingLabel::lines(int width) const
{
    QTextLayout layout(QString(text()).replace(u'\n', QChar::LineSeparator), font());
    setLines(layout, width);
    QStringList result;
    for (int index = 0; index < layout.lineCount(); ++index) {
        const QTextLine line = layout.lineAt(index);
        result.append(layout.text().sliced(line.textStart(), line.textLength()));
    }
    return result;
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
    setLines(layout, width());
    QPainter painter(this);
    painter.setPen(palette().color(foregroundRole()));
    layout.draw(&painter, {0, 0});
}

} // namespace orvesa
