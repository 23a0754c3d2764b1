#pragma once

// One line of plain text that ends in an ellipsis where the room does. Main thread only.

#include <QLabel>

namespace orvesa {

class ElidedLabel final : public QLabel {
    Q_OBJECT

public:
    explicit ElidedLabel(const QFont &font, QWidget *parent = nullptr);

    /// Shows the text's beginning on one line. Of a very long text only as much is kept as any line can show.
    void setContent(const QString &text);

    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace orvesa
