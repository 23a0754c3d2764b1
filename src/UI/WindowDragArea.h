#pragma once

// A widget by which the user drags the window that it is in. It draws nothing. Main thread.

#include <QPoint>
#include <QWidget>

#include <optional>

namespace orvesa {

class WindowDragArea : public QWidget {
    Q_OBJECT

public:
    using QWidget::QWidget;

protected:
    /// Has the whole window follow the pointer, from where the button went down (device-independent pixels, whole
    /// desktop). Called for the window by every area in it.
    virtual void moveWindow(QPoint pressed);

    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    std::optional<QPoint> m_pressed; ///< and not moved since
};

} // namespace orvesa
