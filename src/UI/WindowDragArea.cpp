#include "UI/WindowDragArea.h"

#include <QMouseEvent>
#include <QWindow>

namespace orvesa {

void WindowDragArea::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton) {
        QWidget::mousePressEvent(event);
        return;
    }
    m_isPressed = true;
    event->accept();
}

void WindowDragArea::mouseMoveEvent(QMouseEvent *event)
{
    // Only now: a window manager that learns of a drag after a quick click's release would go on dragging.
    if (!m_isPressed) {
        QWidget::mouseMoveEvent(event);
        return;
    }
    // The window manager moves the window, so that it also snaps, crosses screens and obeys the desktop's own rules. It
    // starts from where the pointer is now, a pixel or two from where the button went down.
    m_isPressed = false;
    if (QWindow *handle = window()->windowHandle()) {
        handle->startSystemMove();
    }
    event->accept();
}

void WindowDragArea::mouseReleaseEvent(QMouseEvent *event)
{
    m_isPressed = false;
    QWidget::mouseReleaseEvent(event);
}

} // namespace orvesa
