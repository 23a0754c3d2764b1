#include "UI/TextArea.h"

#include "UI/ControlPainting.h"
#include "UI/SlimScrollBar.h"
#include "UI/Style.h"

#include <QEvent>

namespace orvesa {

namespace {
constexpr int documentMargin = 4;
} // namespace

TextArea::TextArea(QWidget *parent) : QPlainTextEdit(parent)
{
    setFrameShape(QFrame::NoFrame);
    setTabChangesFocus(true);
    setFont(Style::controlFont());
    setVerticalScrollBar(new SlimScrollBar(this));
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    document()->setDocumentMargin(documentMargin);
    constexpr int inset = Style::focusRingWidth + Style::fieldPadding - documentMargin;
    setViewportMargins(inset, inset, inset - Style::focusRingWidth, inset);
    setContentsMargins(0, Style::focusRingWidth + 2, Style::focusRingWidth + 2, Style::focusRingWidth + 2);
    viewport()->setAutoFillBackground(false);
    QPalette seeThrough;
    seeThrough.setColor(QPalette::Base, Qt::transparent);
    setPalette(seeThrough);
}

QString TextArea::text() const
{
    return document()->toRawText().replace(QChar::ParagraphSeparator, u'\n');
}

bool TextArea::event(QEvent *event)
{
    if (event->type() == QEvent::Paint) {
        const Style::Colors &colors = Style::colors(palette());
        const QColor accent = palette().color(QPalette::Highlight);
        const QRectF area = ControlPainting::controlArea(*this);
        QPainter painter(this);
        if (hasFocus()) {
            ControlPainting::paintFieldGlow(painter, area, Style::controlRadius, accent);
        }
        ControlPainting::paintFrame(painter, area, Style::controlRadius, colors.field,
                                    hasFocus() ? accent : colors.fieldLine);
        return true;
    }
    return QPlainTextEdit::event(event);
}

void TextArea::focusInEvent(QFocusEvent *event)
{
    update();
    QPlainTextEdit::focusInEvent(event);
}

void TextArea::focusOutEvent(QFocusEvent *event)
{
    update();
    QPlainTextEdit::focusOutEvent(event);
}

} // namespace orvesa
