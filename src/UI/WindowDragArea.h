#pragma once

// A widget by which the user drags the window that it is in. It draws nothing and has no state.

#include <QWidget>

namespace orvesa {

class WindowDragArea : public QWidget {
    Q_OBJECT

public:
    using QWidget::QWidget;

protected:
    void mousePressEvent(QMouseEvent *event) override;
};

} // namespace orvesa
