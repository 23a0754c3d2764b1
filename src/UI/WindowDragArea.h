#pragma once

// A widget by which the user drags the window that it is in. It draws nothing.

#include <QWidget>

namespace orvesa {

class WindowDragArea : public QWidget {
    Q_OBJECT

public:
    using QWidget::QWidget;

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    bool m_isPressed = false; ///< and not moved since
};

} // namespace orvesa
