#include "UI/Capsule.h"

#include "UI/ControlPainting.h"
#include "UI/Style.h"

namespace orvesa {

namespace {
constexpr int horizontalPadding = 6;
constexpr int verticalPadding = 2;
} // namespace

Capsule::Capsule(QWidget *parent) : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    QFont small = Style::captionFont();
    small.setWeight(QFont::DemiBold);
    setFont(small);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

QSize Capsule::sizeHint() const
{
    return {fontMetrics().horizontalAdvance(text()) + 2 * horizontalPadding,
            fontMetrics().height() + 2 * verticalPadding};
}

void Capsule::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    ControlPainting::paintFrame(painter, rect(), height() / 2.0, Style::badgeColor(), Style::badgeColor());
    painter.setPen(Qt::white);
    painter.drawText(rect(), Qt::AlignCenter | Qt::TextSingleLine, text());
}

} // namespace orvesa
