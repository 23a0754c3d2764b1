#include "Platform/macos/MacDesktop.h"

#include "Platform/QtClock.h"
#include "Platform/macos/AXElements.h"
#include "Platform/macos/AXTrust.h"
#include "Platform/macos/AppKitKeyMonitor.h"
#include "Platform/macos/AppKitMouseMonitor.h"
#include "Platform/macos/AppKitPanelWindow.h"
#include "Platform/macos/AppKitPasteboard.h"
#include "Platform/macos/AppKitWorkspace.h"
#include "Platform/macos/CarbonHotKeys.h"
#include "Platform/macos/FoundationPreferredLanguages.h"
#include "Platform/macos/FoundationUserDefaults.h"
#include "Platform/macos/LoginItemAutostart.h"
#include "Platform/macos/MessagePortSingleInstance.h"
#include "Platform/macos/QuartzKeyboardEvents.h"
#include "Platform/macos/SecurityKeyStore.h"
#include "Platform/macos/StatusBarTray.h"
#include "Platform/macos/SystemScreenCapture.h"
#include "Platform/macos/VisionTextRecognition.h"

#include <utility>

namespace orvesa {

// None of these does anything before it is used.
struct MacDesktop::Adapters {
    explicit Adapters(QString identifier) : userDefaults(std::move(identifier)) {}

    FoundationUserDefaults userDefaults;
    SecurityKeyStore keyStore;
    FoundationPreferredLanguages preferredLanguages;
    QtClock clock;
    MessagePortSingleInstance singleInstance;
    CarbonHotKeys hotKeys;
    AppKitKeyMonitor keyMonitor;
    AppKitWorkspace workspace;
    AXElements accessibilityElements;
    AXTrust accessibilityTrust;
    QuartzKeyboardEvents keyboardEvents;
    AppKitPasteboard pasteboard;
    AppKitMouseMonitor mouseMonitor;
    AppKitPanelWindow panelWindow;
    SystemScreenCapture screenCapture;
    VisionTextRecognition textRecognition;
    StatusBarTray tray;
    LoginItemAutostart autostart;
};

MacDesktop::MacDesktop(QString identifier) : m_adapters(std::make_unique<Adapters>(std::move(identifier))) {}

MacDesktop::~MacDesktop() = default;

UserDefaultsPort &MacDesktop::userDefaults()
{
    return m_adapters->userDefaults;
}

KeyStorePort &MacDesktop::keyStore()
{
    return m_adapters->keyStore;
}

PreferredLanguagesPort &MacDesktop::preferredLanguages()
{
    return m_adapters->preferredLanguages;
}

ClockPort &MacDesktop::clock()
{
    return m_adapters->clock;
}

SingleInstancePort &MacDesktop::singleInstance()
{
    return m_adapters->singleInstance;
}

HotKeyPort &MacDesktop::hotKeys()
{
    return m_adapters->hotKeys;
}

KeyMonitorPort &MacDesktop::keyMonitor()
{
    return m_adapters->keyMonitor;
}

WorkspacePort &MacDesktop::workspace()
{
    return m_adapters->workspace;
}

AccessibilityElementsPort &MacDesktop::accessibilityElements()
{
    return m_adapters->accessibilityElements;
}

AccessibilityTrustPort &MacDesktop::accessibilityTrust()
{
    return m_adapters->accessibilityTrust;
}

KeyboardEventPort &MacDesktop::keyboardEvents()
{
    return m_adapters->keyboardEvents;
}

PasteboardPort &MacDesktop::pasteboard()
{
    return m_adapters->pasteboard;
}

MouseMonitorPort &MacDesktop::mouseMonitor()
{
    return m_adapters->mouseMonitor;
}

PanelWindowPort &MacDesktop::panelWindow()
{
    return m_adapters->panelWindow;
}

ScreenCapturePort &MacDesktop::screenCapture()
{
    return m_adapters->screenCapture;
}

TextRecognitionPort &MacDesktop::textRecognition()
{
    return m_adapters->textRecognition;
}

TrayPort &MacDesktop::tray()
{
    return m_adapters->tray;
}

AutostartPort &MacDesktop::autostart()
{
    return m_adapters->autostart;
}

} // namespace orvesa
