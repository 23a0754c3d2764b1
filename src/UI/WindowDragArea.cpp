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
    // The window manager moves the window, so that it also snaps, crosses screens and obeys the desktop's own rules.
    if (QWindow *handle = window()->windowHandle()) {
        handle->startSystemMove();
    }
    event->accept();
}

} // namespace orvesa
