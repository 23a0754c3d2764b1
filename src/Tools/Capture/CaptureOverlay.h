#pragma once

// The dimmed picture of the screen over everything, on which the user drags out a rectangle.
//
// Draws in the X server: a move of the pointer copies a few small areas there. Main thread; everything must outlive it.

#include "Tools/Capture/FrozenScreen.h"
#include "Tools/Capture/RectangleSelection.h"

#include <QRect>

#include <vector>

#include <xcb/xcb.h>

namespace orvesa {

class CaptureOverlay final {
public:
    /// Mapped when this returns, over all monitors at once.
    CaptureOverlay(xcb_connection_t *connection, const xcb_screen_t &screen, const FrozenScreen &frozen);
    ~CaptureOverlay();
    CaptureOverlay(const CaptureOverlay &) = delete;
    CaptureOverlay &operator=(const CaptureOverlay &) = delete;

    /// Where the label may go, and how large things are. Needs a QGuiApplication from here on.
    void decorate(std::vector<QRect> monitors, double scale);
    void show(const QRect &rectangle);
    void raise();
    /// From now on it has pointer and keyboard: it gets the name by which assistive programs announce it.
    void announce();

    [[nodiscard]] xcb_window_t window() const { return m_window; }
    [[nodiscard]] xcb_cursor_t cursor() const { return m_cursor; }

private:
    void copy(xcb_drawable_t from, xcb_drawable_t to, const QRect &part) const;
    void drawFrame(const QRect &rectangle) const;
    void drawLabel(const QImage &label, QPoint place) const;
    [[nodiscard]] int frameWidth() const;

    xcb_connection_t *m_connection;
    const xcb_screen_t &m_screen;
    const FrozenScreen &m_frozen;
    xcb_window_t m_window;
    xcb_pixmap_t m_canvas; ///< what the window shows, completed before it is copied there
    xcb_gcontext_t m_context;
    xcb_cursor_t m_cursor = 0;
    std::vector<QRect> m_monitors;
    double m_scale = 1;
    QRect m_shown; ///< rectangle and frame
    QRect m_shownLabel;
};

} // namespace orvesa
