#pragma once

// A check box drawn as a switch. Its name comes from its caption. Main thread only.

#include <QCheckBox>

namespace orvesa {

class Switch final : public QCheckBox {
    Q_OBJECT

public:
    explicit Switch(QWidget *parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    [[nodiscard]] bool hitButton(const QPoint &position) const override;
};

} // namespace orvesa
