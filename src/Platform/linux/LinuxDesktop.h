#pragma once

// Every Linux adapter, built at first use and owned together.
//
// Main thread. Making the bundle touches nothing outside the process. What the command line uses (defaults, key store,
// languages, clock) needs no display and no QGuiApplication. Without a display the X11-backed ports give statuses and
// no values; without a session bus so do those that need one.

#include "Platform/AccessibilityElementsPort.h"
#include "Platform/ClockPort.h"
#include "Platform/HotKeyPort.h"
#include "Platform/KeyMonitorPort.h"
#include "Platform/KeyStorePort.h"
#include "Platform/KeyboardEventPort.h"
#include "Platform/MouseMonitorPort.h"
#include "Platform/PanelWindowPort.h"
#include "Platform/PasteboardPort.h"
#include "Platform/PreferredLanguagesPort.h"
#include "Platform/SingleInstancePort.h"
#include "Platform/TrayPort.h"
#include "Platform/UserDefaultsPort.h"
#include "Platform/WorkspacePort.h"
#include "Platform/linux/ATSPITrust.h"

#include <memory>

namespace orvesa {

class LinuxDesktop final {
public:
    /// `identifier` names the preferences domain; `productName` begins the labels in the key store.
    LinuxDesktop(QString identifier, QString productName);
    ~LinuxDesktop();
    Q_DISABLE_COPY_MOVE(LinuxDesktop)

    [[nodiscard]] UserDefaultsPort &userDefaults();
    [[nodiscard]] KeyStorePort &keyStore();
    [[nodiscard]] PreferredLanguagesPort &preferredLanguages();
    [[nodiscard]] ClockPort &clock();
    [[nodiscard]] SingleInstancePort &singleInstance();
    [[nodiscard]] HotKeyPort &hotKeys();
    [[nodiscard]] KeyMonitorPort &keyMonitor();
    [[nodiscard]] TrayPort &tray();
    [[nodiscard]] WorkspacePort &workspace();
    [[nodiscard]] AccessibilityElementsPort &accessibilityElements();
    [[nodiscard]] KeyboardEventPort &keyboardEvents();
    /// The adapter itself: whoever shows the request's dialog sets the presenter and calls enable().
    [[nodiscard]] ATSPITrust &accessibilityTrust();
    [[nodiscard]] PasteboardPort &pasteboard();
    [[nodiscard]] MouseMonitorPort &mouseMonitor();
    [[nodiscard]] PanelWindowPort &panelWindow();

    /// Connects to the buses ahead of the first shortcut. For an idle moment after the start.
    void warmUp();

private:
    struct Adapters;
    std::unique_ptr<Adapters> m_adapters;
};

} // namespace orvesa
