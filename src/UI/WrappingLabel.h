#pragma once

// A label whose text wraps anywhere where it cannot at a blank: an address or a service's answer has none. A text of a
// few lines does not end in a single word or character.
//
// Main thread only.

#include <QLabel>

class QTextLayout;

namespace orvesa {

class WrappingLabel final : public QLabel {
    Q_OBJECT

public:
    explicit WrappingLabel(const QFont &font, QWidget *parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;
    [[nodiscard]] int heightForWidth(int width) const override;
    /// The text as it is shown in that width.
    [[nodiscard]] QStringList lines(int width) const;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    /// Breaks the layout's text into lines of that width; gives their height.
    qreal breakLines(QTextLayout &layout, qreal width) const;
    void setLines(QTextLayout &layout, qreal width) const;
};

} // namespace orvesa
