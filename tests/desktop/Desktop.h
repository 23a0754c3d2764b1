#pragma once

// A private desktop: a virtual screen, a window manager, a session bus, an accessibility bus, a key store and a tray,
// with a home folder of its own, for whole-program tests, the demonstration and the benchmarks.
//
//     Desktop desktop(DesktopOptions{});
//     Process &editor = desktop.launch(u"mousepad"_s);
//     const xcb_window_t window = desktop.windows().awaitWindow({.pid = editor.pid()});
//     desktop.keyboard().press(u"Ctrl+a"_s);
//
// Main thread, with a QCoreApplication (no display needed in the test process itself). Several desktops live side by
// side. The desktop owns every process it starts and everything its parts hand out by reference; all ends with it, and
// also when the test process dies: a guard process then ends what carries this desktop's mark, and removes its folder.
// Nothing of the developer's own session is visible on it. Failures are DesktopError.

#include "desktop/AccessibleTree.h"
#include "desktop/DesktopFolders.h"
#include "desktop/DesktopOptions.h"
#include "desktop/Keyboard.h"
#include "desktop/KeyStoreItems.h"
#include "desktop/Pointer.h"
#include "desktop/Process.h"
#include "desktop/Selections.h"
#include "desktop/TrayItems.h"
#include "desktop/Waiting.h"
#include "desktop/Windows.h"

#include <QMap>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

#include <chrono>
#include <functional>
#include <memory>
#include <vector>

namespace orvesa::desktop {

class DesktopGuard;
class XSession;

/// Variables to add for one program; a null QString removes the variable.
using EnvironmentChanges = QMap<QString, QString>;

class Desktop final {
public:
    /// Returns when every part is up.
    explicit Desktop(const DesktopOptions &options = {});
    ~Desktop();
    Desktop(const Desktop &) = delete;
    Desktop &operator=(const Desktop &) = delete;

    [[nodiscard]] const DesktopOptions &options() const { return m_options; }
    /// What every program on the desktop is started with.
    [[nodiscard]] const QProcessEnvironment &environment() const { return m_environment; }
    /// Changes that hide the session bus from a program and still let its windows be read on the accessibility bus.
    [[nodiscard]] EnvironmentChanges withoutSessionBus() const;
    /// Changes that hide the display.
    [[nodiscard]] EnvironmentChanges withoutDisplay() const;

    [[nodiscard]] const QString &display() const { return m_display; } ///< ":N"
    [[nodiscard]] const QString &sessionBusAddress() const { return m_sessionBusAddress; }
    [[nodiscard]] const QString &accessibilityBusAddress() const { return m_accessibilityBusAddress; }
    /// Its home, configuration, runtime and other folders, all inside one temporary folder.
    [[nodiscard]] const DesktopFolders &folders() const { return m_folders; }

    /// Starts a program; it is ended with the desktop at the latest.
    Process &launch(const QString &program, const QStringList &arguments = {}, const EnvironmentChanges &changes = {});
    /// Starts a program, feeds it the input, and waits for its end.
    ProcessResult runToEnd(const QString &program, const QStringList &arguments = {},
                           const EnvironmentChanges &changes = {}, const QByteArray &input = {},
                           std::chrono::milliseconds deadline = usualDeadline);

    [[nodiscard]] Keyboard &keyboard();
    [[nodiscard]] Pointer &pointer();
    [[nodiscard]] Windows &windows();
    [[nodiscard]] Selections &selections();
    /// These three throw DesktopError when the desktop was started without the part.
    [[nodiscard]] AccessibleTree &accessibles();
    [[nodiscard]] KeyStoreItems &keyStore();
    [[nodiscard]] TrayItems &tray();

    /// A tray that comes or goes while programs run.
    void startTray(Tray tray);
    void stopTray();
    void stopKeyStore();
    void setAccessibilityEnabled(bool enabled);
    /// Ends the accessibility bus as a crash would; what starts it ends with it. There are no accessibles() until it is
    /// started anew, and no Accessible of before may be used any more.
    void endAccessibility();
    void startAccessibilityAnew();
    /// One of the desktop's own processes by the end of its program's path and one of its arguments; 0 for none.
    [[nodiscard]] qint64 processOf(const QByteArray &program, const QByteArray &argument = {}) const;

    /// Process ids of everything that carries this desktop's mark, other than the guard: started here or by something
    /// started here.
    [[nodiscard]] std::vector<qint64> runningProcesses() const;
    [[nodiscard]] qint64 guardProcess() const;

private:
    void startServer();
    void paintBackground();
    void startSessionBus();
    void startWindowManager();
    void startAccessibility();
    void startKeyStore();
    void startKeyStoreDaemon(const QStringList &arguments, const QByteArray &input);
    void startEmbeddingTray();
    void startNotifierTray();
    Process &start(const QString &program, const QStringList &arguments, const QProcessEnvironment &environment,
                   std::function<void()> inChild = {});
    void end(Process *&process);
    void endAll();

    DesktopOptions m_options;
    DesktopFolders m_folders;
    QString m_mark;
    QProcessEnvironment m_environment;
    QString m_display;
    QString m_sessionBusAddress;
    QString m_accessibilityBusAddress;
    std::unique_ptr<DesktopGuard> m_guard;
    std::vector<std::unique_ptr<Process>> m_processes; ///< in the order of their start
    Process *m_accessibilityProcess = nullptr;
    Process *m_trayProcess = nullptr;
    Process *m_keyStoreProcess = nullptr;
    std::unique_ptr<XSession> m_session;
    std::unique_ptr<Keyboard> m_keyboard;
    std::unique_ptr<Pointer> m_pointer;
    std::unique_ptr<Windows> m_windows;
    std::unique_ptr<Selections> m_selections;
    std::unique_ptr<AccessibleTree> m_accessibles;
    std::unique_ptr<KeyStoreItems> m_keyStore;
    std::unique_ptr<TrayItems> m_tray;
};

} // namespace orvesa::desktop
