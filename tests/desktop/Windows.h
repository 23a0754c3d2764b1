#pragma once

// The windows of the desktop as its X server and window manager describe them.
//
// Main thread; owned by the Desktop. Windows are X ids; coordinates are pixels of the root window. What has gone in
// between gives empty values. awaitWindow and the other waits are driven by X events.

#include "desktop/Waiting.h"

#include <QByteArray>
#include <QImage>
#include <QRect>
#include <QString>

#include <xcb/xcb.h>

#include <chrono>
#include <optional>
#include <vector>

namespace orvesa::desktop {

class XSession;

/// What a window must be; fields left empty match everything.
struct WindowMatch {
    std::optional<qint64> pid = {};        ///< _NET_WM_PID, or the process of the owning X client where that is absent
    std::optional<QString> title = {};     ///< part of _NET_WM_NAME or WM_NAME
    std::optional<QString> className = {}; ///< instance or class of WM_CLASS
};

class Windows final {
public:
    explicit Windows(XSession &session);

    /// Mapped windows that match: children of the root and clients inside the window manager's frames, lowest first.
    [[nodiscard]] std::vector<xcb_window_t> mapped(const WindowMatch &match = {}) const;
    /// The first such window, once one is mapped. Throws DeadlineError.
    xcb_window_t awaitWindow(const WindowMatch &match, std::chrono::milliseconds deadline = usualDeadline);
    /// The mapped icon window of that process in an embedding tray, once there is one. Throws DeadlineError.
    xcb_window_t awaitTrayIcon(qint64 pid, std::chrono::milliseconds deadline = usualDeadline);
    [[nodiscard]] bool hasTrayIcon(qint64 pid) const; ///< whether that window is there now
    /// Until no such window is mapped.
    void awaitNoWindow(const WindowMatch &match, std::chrono::milliseconds deadline = usualDeadline);
    void awaitActive(xcb_window_t window, std::chrono::milliseconds deadline = usualDeadline);

    [[nodiscard]] xcb_window_t root() const;
    [[nodiscard]] xcb_window_t active() const; ///< _NET_ACTIVE_WINDOW, 0 for none
    [[nodiscard]] xcb_window_t
    inputFocus() const; ///< the top-level client window that has or holds the input focus, or the raw focus
    [[nodiscard]] xcb_window_t rawInputFocus() const;
    [[nodiscard]] bool isMapped(xcb_window_t window) const;
    [[nodiscard]] qint64 pid(xcb_window_t window) const; ///< 0 for unknown
    [[nodiscard]] QString title(xcb_window_t window) const;
    [[nodiscard]] QString className(xcb_window_t window) const;
    [[nodiscard]] QRect geometry(xcb_window_t window) const;      ///< the client area
    [[nodiscard]] QRect frameGeometry(xcb_window_t window) const; ///< with _NET_FRAME_EXTENTS
    /// True when `upper` is above `lower` in the server's stacking order.
    [[nodiscard]] bool isAbove(xcb_window_t upper, xcb_window_t lower) const;

    [[nodiscard]] QByteArray property(xcb_window_t window, const QByteArray &name) const;
    [[nodiscard]] std::vector<quint32> cardinals(xcb_window_t window, const QByteArray &name) const;
    [[nodiscard]] QList<QByteArray> atoms(xcb_window_t window,
                                          const QByteArray &name) const; ///< e.g. _NET_WM_STATE by name

    /// Asks the window manager to activate it, and waits until it is active and has the focus.
    void focus(xcb_window_t window, std::chrono::milliseconds deadline = usualDeadline);
    /// Asks it to close (WM_DELETE_WINDOW).
    void close(xcb_window_t window);
    void moveResize(xcb_window_t window, const QRect &geometry);

    /// The whole root window, or what is on the screen inside a rectangle or a window's area.
    [[nodiscard]] QImage picture() const;
    [[nodiscard]] QImage picture(const QRect &area) const;
    /// Writes a PNG, creating its folder. Throws DesktopError when that fails.
    void screenshot(const QString &path) const;
    void screenshot(const QString &path, xcb_window_t window) const;

private:
    [[nodiscard]] bool matches(xcb_window_t window, const WindowMatch &match) const;
    [[nodiscard]] std::vector<xcb_window_t> children(xcb_window_t window) const;
    [[nodiscard]] xcb_window_t client(xcb_window_t topLevel) const;
    [[nodiscard]] xcb_window_t embeddedBelow(xcb_window_t window, qint64 pid) const;
    [[nodiscard]] xcb_window_t childOfRoot(xcb_window_t window) const;
    void save(const QImage &image, const QString &path) const;

    XSession &m_session;
};

} // namespace orvesa::desktop
