#pragma once

// A short text on a coloured capsule. Main thread only.

#include <QLabel>

namespace orvesa {

class Capsule final : public QLabel {
    Q_OBJECT

public:
    explicit Capsule(QWidget *parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace orvesa
