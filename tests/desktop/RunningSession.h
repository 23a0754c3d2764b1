#pragma once

// The desktop session that this process itself runs in, with the installed product started in it: a real desktop, which
// nobody here has put together. Its parts are those of a private desktop.
//
// Main thread, with a QCoreApplication. DISPLAY and DBUS_SESSION_BUS_ADDRESS name the session. It owns the programs
// that it starts, and its connections; it ends nothing else. Failures are DesktopError.

#include "desktop/AccessibleTree.h"
#include "desktop/BusClient.h"
#include "desktop/Keyboard.h"
#include "desktop/Pointer.h"
#include "desktop/Process.h"
#include "desktop/Selections.h"
#include "desktop/TrayItems.h"
#include "desktop/Windows.h"
#include "desktop/XSession.h"

#include <QString>
#include <QStringList>
#include <QTimer>

#include <functional>
#include <memory>
#include <vector>

namespace orvesa::desktop {

class RunningSession final {
public:
    RunningSession();

    [[nodiscard]] BusClient &bus() { return m_bus; }
    [[nodiscard]] Keyboard &keyboard() { return m_keyboard; }
    [[nodiscard]] Pointer &pointer() { return m_pointer; }
    [[nodiscard]] Windows &windows() { return m_windows; }
    [[nodiscard]] Selections &selections() { return m_selections; }
    [[nodiscard]] AccessibleTree &accessibles() { return m_accessibles; }
    [[nodiscard]] TrayItems &tray() { return m_tray; }

    [[nodiscard]] QString windowManagerName(); ///< empty while there is none
    /// Waits until the product has its name on the bus, and gives its process.
    qint64 awaitProduct(std::chrono::milliseconds deadline);
    Process &launch(const QString &program, const QStringList &arguments = {});
    ProcessResult runToEnd(const QString &program, const QStringList &arguments, std::chrono::milliseconds deadline);

    /// Its panel as a screen reader sees it; null while it is hidden.
    [[nodiscard]] Accessible panel() const;
    /// What the field of the panel ("Original", "Result") reads.
    [[nodiscard]] QString panelText(const QString &field) const;
    /// Its window; 0 while it is hidden.
    [[nodiscard]] xcb_window_t panelWindow() const;

private:
    QString m_sessionBusAddress;
    BusClient m_bus;
    XSession m_session;
    Keyboard m_keyboard;
    Pointer m_pointer;
    Windows m_windows;
    Selections m_selections;
    AccessibleTree m_accessibles;
    TrayItems m_tray;
    QTimer m_look; ///< has waits look again: a real desktop does not tell everything
    qint64 m_product = 0;
    std::vector<std::unique_ptr<Process>> m_processes;
};

} // namespace orvesa::desktop
