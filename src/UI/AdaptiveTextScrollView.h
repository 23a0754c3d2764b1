#pragma once

// A selectable text of any length, as high as it needs up to a limit, scrolling beyond it.
//
// Always plain text: what a service answers is never interpreted. A huge text is measured only as far as the limit
// needs and laid out as it is scrolled. Main thread only.

#include <QTextEdit>

namespace orvesa {

class AdaptiveTextScrollView final : public QTextEdit {
    Q_OBJECT

public:
    explicit AdaptiveTextScrollView(QWidget *parent = nullptr);

    /// Shows `text` in a box of `width`, at most `maximumHeight` high; both in device-independent pixels. Fixes the
    /// widget's height.
    void setContent(const QString &text, int width, int maximumHeight);
    void setTextColor(const QColor &color);

private:
    [[nodiscard]] int heightFor(const QString &text, int width, int maximumHeight) const;

    QString m_text;
    int m_width = 0;
    int m_maximumHeight = 0;
};

} // namespace orvesa
