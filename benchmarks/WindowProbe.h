#pragma once

// Watches a display for windows being mapped and painted, and notes when.
//
// A thread of its own sits on a connection of its own, so that the time stamps do not depend on what else the measuring
// program does. All operations are called from one other thread. Ends its thread when it is destroyed.

#include "desktop/Windows.h"

#include <xcb/xcb.h>

#include <QString>

#include <chrono>
#include <condition_variable>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

namespace orvesa::benchmark {

struct WindowTimes {
    std::optional<qint64> mapped;  ///< nanoseconds on the monotonic clock
    std::optional<qint64> painted; ///< the first drawing into at least a quarter of the window after that
};

class WindowProbe final {
public:
    /// Throws std::runtime_error when the display or its DAMAGE extension is not there.
    explicit WindowProbe(const QString &display);
    ~WindowProbe();
    Q_DISABLE_COPY_MOVE(WindowProbe)

    /// Forgets the times so far.
    void clear();
    /// Forgets when the window was painted, and that alone.
    void awaitPaintingAnew(xcb_window_t window);
    /// When it was painted, once it is; none when the deadline passes before.
    [[nodiscard]] std::optional<qint64> awaitPainted(xcb_window_t window, std::chrono::milliseconds deadline) const;
    [[nodiscard]] WindowTimes times(xcb_window_t window) const;
    /// The process' window that is mapped and painted, once there is one. Throws desktop::DeadlineError.
    [[nodiscard]] xcb_window_t awaitPaintedWindow(desktop::Windows &windows, qint64 process) const;

private:
    struct Disconnect {
        void operator()(xcb_connection_t *connection) const { xcb_disconnect(connection); }
    };

    void run();
    void handle(const xcb_generic_event_t &event, qint64 now);
    void watchTree(xcb_window_t window);
    void watch(xcb_window_t window);
    void notePainted(xcb_window_t window, double share, qint64 now);

    std::unique_ptr<xcb_connection_t, Disconnect> m_connection;
    xcb_window_t m_root = 0;
    xcb_window_t m_farewell = 0; ///< a message to it ends the thread
    quint8 m_firstDamageEvent = 0;
    mutable std::mutex m_mutex;
    mutable std::condition_variable m_changed;
    std::map<xcb_window_t, WindowTimes> m_times;
    std::thread m_thread;
};

} // namespace orvesa::benchmark
