#pragma once

// Key presses for the shortcut recorder on Linux: the X server's whole keyboard where there is one to be had, and
// otherwise, as on Wayland, the presses that reach this program's own windows.
//
// Main thread, inside a QGuiApplication.

#include "Platform/KeyMonitorPort.h"
#include "Platform/linux/X11KeyboardGrab.h"

#include <QObject>

#include <set>

QT_FORWARD_DECLARE_CLASS(QKeyEvent)

namespace orvesa {

class DesktopKeyMonitor final : public QObject, public KeyMonitorPort {
    Q_OBJECT

public:
    DesktopKeyMonitor();
    ~DesktopKeyMonitor() override;

    [[nodiscard]] Token addMonitor(Handler handler) override;
    void removeMonitor(Token token) override;

    [[nodiscard]] bool eventFilter(QObject *watched, QEvent *event) override;

    /// What a key event of a window says about the key.
    [[nodiscard]] static MonitoredKeyPress translated(const QKeyEvent &event);

private:
    bool takesKeyEvent(const QKeyEvent &event);
    void stopFiltering();

    X11KeyboardGrab m_grab;
    Handler m_handler;
    Token m_current = 0;
    Token m_lastToken = 0;
    bool m_isFiltering = false;
    std::set<quint32> m_heldKeys; ///< native scan codes of presses that were taken
};

} // namespace orvesa
