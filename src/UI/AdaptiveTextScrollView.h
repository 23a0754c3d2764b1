#pragma once

// A selectable text of any length, as high as it needs up to a limit, scrolling beyond it.
//
// Always plain text: what a service answers is never interpreted. Of a long text only what fills the widget is laid out
// at once; the rest follows in slices of a few milliseconds whenever the event loop has nothing else to do. Main thread
// only.

#include "UI/TextLanguage.h"

#include <QBasicTimer>
#include <QTextEdit>

class QTextBlock;

namespace orvesa {

class AdaptiveTextScrollView final : public QTextEdit {
    Q_OBJECT

public:
    explicit AdaptiveTextScrollView(QWidget *parent = nullptr);

    /// Shows `text` in a box of `width`, at most `maximumHeight` high; both in device-independent pixels. Fixes the
    /// widget's height. `language` is what the text is taken for when its characters do not tell.
    void setContent(const QString &text, int width, int maximumHeight, TextLanguage language = TextLanguage::other);
    void setTextColor(const QColor &color);

    /// The text set last, whether all of it is laid out or not.
    [[nodiscard]] const QString &content() const { return m_text; }
    /// The height of a line in the text's font, for what stands beside the first one.
    [[nodiscard]] int lineHeight() const;
    [[nodiscard]] bool isComplete() const { return m_shown == m_text.size(); }

protected:
    void timerEvent(QTimerEvent *event) override;
    [[nodiscard]] QMimeData *createMimeDataFromSelection() const override;

private:
    [[nodiscard]] int measuredHeight() const;
    void startOver();
    void appendSlice();
    void keepDirection(QTextBlock &block);
    [[nodiscard]] qsizetype endOfSlice() const;
    [[nodiscard]] qsizetype startOfLastLine() const;

    QString m_text;
    qsizetype m_shown = 0; ///< how much of the text the document holds
    int m_width = 0;
    int m_maximumHeight = 0;
    QBasicTimer m_filling;
};

} // namespace orvesa
