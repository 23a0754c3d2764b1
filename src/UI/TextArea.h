#pragma once

// Several lines of plain text to type, with a rounded border and a focus ring. Tab leaves it. Main thread only.

#include <QPlainTextEdit>

namespace orvesa {

class TextArea final : public QPlainTextEdit {
    Q_OBJECT

public:
    explicit TextArea(QWidget *parent = nullptr);

    /// The text as it was typed, with the blanks that no line breaks at; toPlainText() makes ordinary ones of them.
    [[nodiscard]] QString text() const;

protected:
    bool event(QEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
};

} // namespace orvesa
