#pragma once

// Keeps news about the states of a window that is being shown from Qt.
//
// Qt asks the X server back at each of them, and while a window manager takes a window over it keeps such questions
// waiting: the main thread would stand still for the better part of a showing. What the states of a panel are Qt need
// not know. Main thread, inside a QGuiApplication. Nothing is filtered before begin() and after end().

#include "Platform/linux/X11Connection.h"

#include <QAbstractNativeEventFilter>

namespace orvesa {

class X11StateSilence final : public QAbstractNativeEventFilter {
public:
    /// The connection must outlive this object.
    explicit X11StateSilence(X11Connection &connection);
    ~X11StateSilence() override;
    Q_DISABLE_COPY_MOVE(X11StateSilence)

    void begin(xcb_window_t window);
    void end();

    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;

private:
    X11Connection &m_connection;
    xcb_window_t m_window = XCB_WINDOW_NONE;
    xcb_atom_t m_netState = XCB_ATOM_NONE;
    xcb_atom_t m_state = XCB_ATOM_NONE;
};

} // namespace orvesa
