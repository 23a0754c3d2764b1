#include "UI/WindowDragArea.h"

#include <QMouseEvent>
#include <QWindow>

#include <utility>

namespace orvesa {

void WindowDragArea::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton) {
        QWidget::mousePressEvent(event);
        return;
    }
    m_pressed = event->globalPosition().toPoint();
    event->accept();
}

void WindowDragArea::mouseMoveEvent(QMouseEvent *event)
{
    // Only now: a window manager that learns of a drag after a quick click's release would go on dragging.
    if (!m_pressed) {
        QWidget::mouseMoveEvent(event);
        return;
    }
    // The window manager moves the window, so that it also snaps, crosses screens and obeys the desktop's own rules.
    event->accept();
    const QPoint pressed = *std::exchange(m_pressed, std::nullopt);
    if (auto *whole = qobject_cast<WindowDragArea *>(window())) {
        whole->moveWindow(pressed);
    } else {
        moveWindow(pressed);
    }
}

void WindowDragArea::moveWindow(QPoint)
{
    if (QWindow *handle = window()->windowHandle()) {
        handle->startSystemMove();
    }
}

void WindowDragArea::mouseReleaseEvent(QMouseEvent *event)
{
    m_pressed.reset();
    QWidget::mouseReleaseEvent(event);
}

} // namespace orvesa
