#include "UI/AdaptiveTextScrollView.h"

#include "UI/ResultMetrics.h"
#include "UI/SlimScrollBar.h"
#include "UI/Style.h"

#include <QMimeData>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextLayout>
#include <QTimerEvent>

#include <algorithm>

namespace orvesa {

namespace {

/// Laid out in a few milliseconds, and enough to fill the widget, unless it consists of characters without width.
constexpr qsizetype sliceLength = 4000;
/// Whoever sends more characters without width than this gets the full height for them.
constexpr qsizetype measuredLength = 16 * sliceLength;
constexpr int lineHeightPercent = 116;
constexpr int blanksPerTab = 4;

/// A block's state: its paragraph goes on in the next block.
constexpr int continued = 1;

QTextBlockFormat paragraphFormat(Qt::LayoutDirection direction)
{
    QTextBlockFormat format;
    format.setLineHeight(lineHeightPercent, QTextBlockFormat::ProportionalHeight);
    format.setLayoutDirection(direction);
    return format;
}

QTextOption wrapping(const QFont &font)
{
    QTextOption option;
    // An address or a run of CJK text has no blanks to break at.
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    option.setTextDirection(Qt::LayoutDirectionAuto);
    // What is indented with tabs is code, and the panel is narrow.
    option.setTabStopDistance(blanksPerTab * QFontMetricsF(font).horizontalAdvance(u' '));
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
    document()->setDefaultTextOption(wrapping(font()));
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

void AdaptiveTextScrollView::setContent(const QString &text, int width, int maximumHeight, TextLanguage language)
{
    const QFont textFont = Style::contentFont(font(), textLanguage(text, language));
    const bool hasOtherFont = textFont.families() != font().families();
    if (text == m_text && width == m_width && maximumHeight == m_maximumHeight && !hasOtherFont) {
        return;
    }
    if (hasOtherFont) {
        setFont(textFont);
        document()->setDefaultTextOption(wrapping(textFont));
    }
    const bool isOther = text != m_text;
    m_text = text;
    m_width = width;
    m_maximumHeight = maximumHeight;
    if (isOther) {
        startOver();
    }
    if (isOther && !m_text.isEmpty()) {
        appendSlice();
        moveCursor(QTextCursor::Start);
    }
    if (!isComplete()) {
        m_filling.start(0, this);
    }
    const int height = measuredHeight();
    // A text that fits must not scroll by the rounding of its last line.
    setVerticalScrollBarPolicy(height < maximumHeight ? Qt::ScrollBarAlwaysOff : Qt::ScrollBarAsNeeded);
    setFixedHeight(height);
}

int AdaptiveTextScrollView::lineHeight() const
{
    return fontMetrics().height() * lineHeightPercent / 100;
}

/// Measured apart: the document of a widget that is not shown yet has another width than the widget is going to have.
int AdaptiveTextScrollView::measuredHeight() const
{
    QTextDocument measured;
    measured.setDefaultFont(font());
    measured.setDocumentMargin(0);
    measured.setDefaultTextOption(wrapping(font()));
    measured.setUndoRedoEnabled(false);
    measured.setTextWidth(m_width);
    QTextCursor cursor(&measured);
    cursor.setBlockFormat(paragraphFormat(Qt::LayoutDirectionAuto));
    int height = ResultMetrics::displayedTextHeight(0, m_maximumHeight);
    for (qsizetype done = 0; done < m_text.size() && height < m_maximumHeight;) {
        if (done >= measuredLength) {
            return m_maximumHeight;
        }
        // All of a text that is only a little longer, so that there is no joint in what decides the height.
        const qsizetype rest = m_text.size() - done;
        const qsizetype length = rest <= sliceLength + sliceLength / 2 ? rest : sliceLength;
        cursor.insertText(m_text.sliced(done, length));
        done += length;
        height = ResultMetrics::displayedTextHeight(measured.size().height(), m_maximumHeight);
    }
    return height;
}

void AdaptiveTextScrollView::startOver()
{
    m_filling.stop();
    m_shown = 0;
    clear();
    textCursor().setBlockFormat(paragraphFormat(Qt::LayoutDirectionAuto));
    verticalScrollBar()->setValue(0);
}

/// A slice ends with a paragraph where there is an end nearby, else between two user-perceived characters.
qsizetype AdaptiveTextScrollView::endOfSlice() const
{
    const qsizetype limit = m_shown + sliceLength;
    if (m_text.size() - m_shown <= sliceLength + sliceLength / 2) {
        return m_text.size();
    }
    const qsizetype paragraph = m_text.lastIndexOf(u'\n', limit - 1);
    if (paragraph >= m_shown) {
        return paragraph + 1;
    }
    const bool splitsPair = m_text.at(limit).isLowSurrogate() || m_text.at(limit) == u'\n';
    return splitsPair ? limit - 1 : limit;
}

/// Where the last line of the document starts in its block, as it is laid out now; 0 where there is only one.
qsizetype AdaptiveTextScrollView::startOfLastLine() const
{
    const QTextLayout *lines = document()->lastBlock().layout();
    return lines->lineCount() > 1 ? lines->lineAt(lines->lineCount() - 1).textStart() : 0;
}

void AdaptiveTextScrollView::appendSlice()
{
    QTextCursor end(document());
    end.movePosition(QTextCursor::End);
    QTextBlock first = end.block();
    const bool goesOn = first.previous().isValid() && first.previous().userState() == continued;
    const qsizetype next = endOfSlice();
    end.insertText(m_text.sliced(m_shown, next - m_shown));
    m_shown = next;
    if (goesOn) {
        keepDirection(first);
    }
    if (isComplete() || m_text.at(m_shown - 1) == u'\n') {
        return;
    }
    // A paragraph longer than a slice goes on in a block of its own, for a block is laid out as a whole. It is cut
    // where a line ends anyway, so that nobody sees it.
    QTextBlock block = document()->lastBlock();
    if (const qsizetype start = startOfLastLine(); start > 0) {
        end.setPosition(block.position() + static_cast<int>(start));
        end.movePosition(QTextCursor::End, QTextCursor::KeepAnchor);
        m_shown -= end.selectedText().size();
        end.removeSelectedText();
    }
    block.setUserState(continued);
    end.insertBlock(paragraphFormat(Qt::LayoutDirectionAuto));
    document()->lastBlock().setUserState(-1);
}

/// A block that continues a paragraph has that paragraph's direction; those after it find their own.
void AdaptiveTextScrollView::keepDirection(QTextBlock &block)
{
    QTextCursor cursor(block);
    cursor.setBlockFormat(paragraphFormat(block.previous().textDirection()));
    if (const QTextBlock next = block.next(); next.isValid()) {
        cursor.setPosition(next.position());
        cursor.movePosition(QTextCursor::End, QTextCursor::KeepAnchor);
        cursor.setBlockFormat(paragraphFormat(Qt::LayoutDirectionAuto));
    }
}

void AdaptiveTextScrollView::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != m_filling.timerId()) {
        QTextEdit::timerEvent(event);
        return;
    }
    appendSlice();
    if (isComplete()) {
        m_filling.stop();
    }
}

QMimeData *AdaptiveTextScrollView::createMimeDataFromSelection() const
{
    const QTextCursor selection = textCursor();
    QString text;
    for (QTextBlock block = document()->findBlock(selection.selectionStart());
         block.isValid() && block.position() < selection.selectionEnd(); block = block.next()) {
        const int from = std::max(selection.selectionStart() - block.position(), 0);
        const int to = std::min(selection.selectionEnd() - block.position(), block.length());
        const QString part = block.text();
        text += QStringView(part).sliced(from, std::min<qsizetype>(to, part.size()) - from);
        if (to == block.length() && block.userState() != continued) {
            text += u'\n'; // the selection goes on behind the end of the paragraph
        }
    }
    // Line separators are what a line break within a paragraph becomes; nobody else wants to see them.
    text.replace(QChar::LineSeparator, u'\n');
    if (!isComplete() && selection.selectionEnd() == document()->characterCount() - 1) {
        text += QStringView(m_text).sliced(m_shown); // everything was selected before everything was there
    }
    auto *copied = new QMimeData;
    copied->setText(text);
    return copied;
}

} // namespace orvesa
