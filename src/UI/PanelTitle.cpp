#include "UI/PanelTitle.h"

#include "UI/ControlPainting.h"
#include "UI/Style.h"

#include <QPainter>

namespace orvesa {

namespace {
constexpr int shortestTitle = 60;
constexpr int smallestPixelSize = 12;
} // namespace

PanelTitle::PanelTitle(QWidget *parent) : QWidget(parent)
{
    setFont(Style::titleFont());
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    // The header below is what the user drags.
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void PanelTitle::setText(const QString &text)
{
    // A title may come from a prompt's name, which may hold line breaks.
    const QString line = text.simplified();
    // The same title is another language's once the interface is.
    setFont(Style::contentFont(Style::titleFont(), textLanguage(line, Style::interfaceLanguage())));
    if (line == m_text) {
        return;
    }
    m_text = line;
    setAccessibleName(line);
    updateGeometry();
    update();
}

QSize PanelTitle::sizeHint() const
{
    return {fontMetrics().horizontalAdvance(m_text) + 1, fontMetrics().height() + 1};
}

QSize PanelTitle::minimumSizeHint() const
{
    return {shortestTitle, fontMetrics().height() + 1};
}

QFont PanelTitle::fittingFont() const
{
    return Style::fitting(font(), m_text, width(), smallestPixelSize);
}

bool PanelTitle::isShortened() const
{
    return QFontMetrics(fittingFont()).elidedText(m_text, Qt::ElideRight, width()) != m_text;
}

void PanelTitle::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setFont(fittingFont());
    const QString line = painter.fontMetrics().elidedText(m_text, Qt::ElideRight, width());
    ControlPainting::drawTextOnGradient(painter, rect(), line);
}

} // namespace orvesa
