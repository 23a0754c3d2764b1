#pragma once

// A narrow vertical scroll bar that is only a handle, so that a long text keeps its width and its calm. Main thread.

#include <QScrollBar>

namespace orvesa {

class SlimScrollBar final : public QScrollBar {
    Q_OBJECT

public:
    explicit SlimScrollBar(QWidget *parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void enterEvent(QEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;
};

} // namespace orvesa
