#pragma once

// A message with its tone: what became of something, and whether that is good. The text wraps. Main thread only.

#include <QWidget>

#include <optional>

class QLabel;

namespace orvesa {

class WrappingLabel;

class StatusLabel final : public QWidget {
    Q_OBJECT

public:
    enum class Tone { neutral, success, warning, failure };

    /// `symbol` stands before the text; none when it is empty.
    explicit StatusLabel(const QFont &font, QWidget *parent = nullptr, QString symbol = {});

    /// Shows the message, or hides everything when there is none.
    void setMessage(const std::optional<QString> &text, Tone tone);
    void setSymbol(const QString &symbol);

protected:
    void changeEvent(QEvent *event) override;

private:
    void refreshColors();

    QString m_symbol;
    Tone m_tone = Tone::neutral;
    QLabel *m_image;
    WrappingLabel *m_text;
};

} // namespace orvesa
