#include "UI/ElidedLabel.h"

#include "UI/Style.h"

#include <QPainter>

using namespace Qt::StringLiterals;

namespace orvesa {

namespace {
constexpr qsizetype longest = 240;
constexpr int smallestWidth = 40;
} // namespace

ElidedLabel::ElidedLabel(const QFont &font, QWidget *parent) : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    setFont(font);
}

void ElidedLabel::setContent(const QString &text)
{
    // More than is kept is read, because line breaks and runs of blanks become one blank each.
    const QString line = text.left(4 * longest).simplified();
    setFont(Style::contentFont(font(), textLanguage(line, Style::interfaceLanguage())));
    if (line.size() <= longest && text.size() <= 4 * longest) {
        setText(line);
        return;
    }
    const qsizetype end = line.size() > longest && line.at(longest - 1).isHighSurrogate() ? longest - 1 : longest;
    setText(line.left(end) + u'…');
}

QSize ElidedLabel::minimumSizeHint() const
{
    return {smallestWidth, QLabel::minimumSizeHint().height()};
}

void ElidedLabel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setPen(palette().color(foregroundRole()));
    painter.drawText(contentsRect(), Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine,
                     fontMetrics().elidedText(text(), Qt::ElideRight, contentsRect().width()));
}

} // namespace orvesa
