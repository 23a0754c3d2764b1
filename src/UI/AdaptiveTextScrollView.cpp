#include "UI/AdaptiveTextScrollView.h"

#include "UI/ResultMetrics.h"
#include "UI/SlimScrollBar.h"
#include "UI/Style.h"

#include <QScrollBar>
#include <QTextCursor>
#include <QTextDocument>

namespace orvesa {

namespace {

// More text than this fills any permitted height at any permitted width, unless it is made of characters without width.
constexpr qsizetype measuredPrefix = 20000;
constexpr int lineHeightPercent = 116;

void fill(QTextDocument &document, const QString &text)
{
    QTextCursor cursor(&document);
    cursor.select(QTextCursor::Document);
    cursor.removeSelectedText();
    QTextBlockFormat format;
    format.setLineHeight(lineHeightPercent, QTextBlockFormat::ProportionalHeight);
    cursor.setBlockFormat(format);
    cursor.insertText(text);
}

QTextOption wrapping()
{
    QTextOption option;
    // An address or a run of CJK text has no blanks to break at.
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    option.setTextDirection(Qt::LayoutDirectionAuto);
    return option;
}

} // namespace

AdaptiveTextScrollView::AdaptiveTextScrollView(QWidget *parent) : QTextEdit(parent)
{
    setReadOnly(true);
    setAcceptRichText(false);
    setUndoRedoEnabled(false);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setFrameShape(QFrame::NoFrame);
    setVerticalScrollBar(new SlimScrollBar(this));
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFont(Style::bodyFont());
    document()->setDocumentMargin(0);
    document()->setDefaultTextOption(wrapping());
    viewport()->setAutoFillBackground(false);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setTabChangesFocus(true);
}

void AdaptiveTextScrollView::setTextColor(const QColor &color)
{
    QPalette colored = palette();
    colored.setColor(QPalette::Base, Qt::transparent);
    if (colored.color(QPalette::Text) == color) {
        return;
    }
    colored.setColor(QPalette::Text, color);
    setPalette(colored);
}

void AdaptiveTextScrollView::setContent(const QString &text, int width, int maximumHeight)
{
    if (text == m_text && width == m_width && maximumHeight == m_maximumHeight) {
        return;
    }
    if (text != m_text) {
        m_text = text;
        fill(*document(), text);
        moveCursor(QTextCursor::Start);
        verticalScrollBar()->setValue(0);
    }
    m_width = width;
    m_maximumHeight = maximumHeight;
    const int height = heightFor(text, width, maximumHeight);
    // A text that fits must not scroll by the rounding of its last line.
    setVerticalScrollBarPolicy(height < maximumHeight ? Qt::ScrollBarAlwaysOff : Qt::ScrollBarAsNeeded);
    setFixedHeight(height);
}

int AdaptiveTextScrollView::heightFor(const QString &text, int width, int maximumHeight) const
{
    QTextDocument measured;
    measured.setDefaultFont(font());
    measured.setDocumentMargin(0);
    measured.setDefaultTextOption(wrapping());
    measured.setTextWidth(width);
    if (text.size() > measuredPrefix) {
        fill(measured, text.first(measuredPrefix));
        const int height = ResultMetrics::displayedTextHeight(measured.size().height(), maximumHeight);
        if (height == maximumHeight) {
            return height;
        }
    }
    fill(measured, text);
    const qreal height = text.isEmpty() ? 0 : measured.size().height();
    return ResultMetrics::displayedTextHeight(height, maximumHeight);
}

} // namespace orvesa
