#pragma once

// A line of text to type, with a rounded border and a focus ring. Main thread only.

#include <QLineEdit>

namespace orvesa {

class TextField : public QLineEdit {
    Q_OBJECT

public:
    explicit TextField(QWidget *parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace orvesa
