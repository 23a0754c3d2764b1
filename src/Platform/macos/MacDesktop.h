#pragma once

// Every macOS adapter, owned together.
//
// Main thread. Making the bundle touches nothing outside the process. What the command line uses (defaults, key store,
// languages, clock) needs no window server and no QGuiApplication.

#include "Platform/AccessibilityElementsPort.h"
#include "Platform/AccessibilityTrustPort.h"
#include "Platform/AutostartPort.h"
#include "Platform/ClockPort.h"
#include "Platform/HotKeyPort.h"
#include "Platform/KeyMonitorPort.h"
#include "Platform/KeyStorePort.h"
#include "Platform/KeyboardEventPort.h"
#include "Platform/MouseMonitorPort.h"
#include "Platform/PanelWindowPort.h"
#include "Platform/PasteboardPort.h"
#include "Platform/PreferredLanguagesPort.h"
#include "Platform/ScreenCapturePort.h"
#include "Platform/SingleInstancePort.h"
#include "Platform/TextRecognitionPort.h"
#include "Platform/TrayPort.h"
#include "Platform/UserDefaultsPort.h"
#include "Platform/WorkspacePort.h"

#include <QString>

#include <memory>

namespace orvesa {

class MacDesktop final {
public:
    /// `identifier` names the preferences domain.
    explicit MacDesktop(QString identifier);
    ~MacDesktop();
    Q_DISABLE_COPY_MOVE(MacDesktop)

    [[nodiscard]] UserDefaultsPort &userDefaults();
    [[nodiscard]] KeyStorePort &keyStore();
    [[nodiscard]] PreferredLanguagesPort &preferredLanguages();
    [[nodiscard]] ClockPort &clock();
    [[nodiscard]] SingleInstancePort &singleInstance();
    [[nodiscard]] HotKeyPort &hotKeys();
    [[nodiscard]] KeyMonitorPort &keyMonitor();
    [[nodiscard]] WorkspacePort &workspace();
    [[nodiscard]] AccessibilityElementsPort &accessibilityElements();
    [[nodiscard]] AccessibilityTrustPort &accessibilityTrust();
    [[nodiscard]] KeyboardEventPort &keyboardEvents();
    [[nodiscard]] PasteboardPort &pasteboard();
    [[nodiscard]] MouseMonitorPort &mouseMonitor();
    [[nodiscard]] PanelWindowPort &panelWindow();
    [[nodiscard]] ScreenCapturePort &screenCapture();
    [[nodiscard]] TextRecognitionPort &textRecognition();
    [[nodiscard]] TrayPort &tray();
    [[nodiscard]] AutostartPort &autostart();

private:
    struct Adapters;
    std::unique_ptr<Adapters> m_adapters;
};

} // namespace orvesa
