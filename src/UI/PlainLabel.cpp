#include "UI/PlainLabel.h"

namespace orvesa {

QLabel *makePlainLabel(const QFont &font, QWidget *parent)
{
    auto *label = new QLabel(parent);
    label->setTextFormat(Qt::PlainText);
    label->setFont(font);
    return label;
}

void setLabelColor(QLabel &label, const QColor &color)
{
    QPalette palette = label.palette();
    if (palette.color(QPalette::WindowText) == color) {
        return;
    }
    palette.setColor(QPalette::WindowText, color);
    label.setPalette(palette);
}

} // namespace orvesa
