#include "UI/InterfaceFonts.h"

#include "UI/Style.h"

#include <QToolTip>
#include <QWidget>

namespace orvesa::InterfaceFonts {

namespace {

void followOne(QWidget &widget)
{
    const QFont font = Style::inLanguage(widget.font(), Style::interfaceLanguage());
    if (font.families() != widget.font().families()) {
        widget.setFont(font);
    }
}

} // namespace

void follow(QWidget &root)
{
    QToolTip::setFont(Style::inLanguage(QToolTip::font(), Style::interfaceLanguage()));
    followOne(root);
    const auto widgets = root.findChildren<QWidget *>();
    for (QWidget *widget : widgets) {
        followOne(*widget);
    }
}

} // namespace orvesa::InterfaceFonts
