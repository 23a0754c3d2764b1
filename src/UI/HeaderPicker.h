#pragma once

// A menu-style picker for the panel's coloured header: a pill with the current choice and a chevron. Main thread.

#include <QComboBox>

namespace orvesa {

class HeaderPicker final : public QComboBox {
    Q_OBJECT

public:
    explicit HeaderPicker(QWidget *parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
};

} // namespace orvesa
