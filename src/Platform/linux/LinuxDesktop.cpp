#include "Platform/linux/LinuxDesktop.h"

#include "Platform/QtClock.h"
#include "Platform/linux/ATSPIBus.h"
#include "Platform/linux/ATSPIElements.h"
#include "Platform/linux/DBusSingleInstance.h"
#include "Platform/linux/DesktopKeyMonitor.h"
#include "Platform/linux/DesktopTray.h"
#include "Platform/linux/FileUserDefaults.h"
#include "Platform/linux/LocalePreferredLanguages.h"
#include "Platform/linux/PortalHotKeys.h"
#include "Platform/linux/SecretServiceKeyStore.h"
#include "Platform/linux/WaylandSession.h"
#include "Platform/linux/WaylandWorkspace.h"
#include "Platform/linux/X11Connection.h"
#include "Platform/linux/X11HotKeys.h"
#include "Platform/linux/X11KeyboardEvents.h"
#include "Platform/linux/X11MouseMonitor.h"
#include "Platform/linux/X11PanelWindow.h"
#include "Platform/linux/X11Pasteboard.h"
#include "Platform/linux/X11TerminalSelection.h"
#include "Platform/linux/X11Workspace.h"

#include <optional>
#include <utility>

namespace orvesa {

// Later members refer to earlier ones and are destroyed before them.
struct LinuxDesktop::Adapters {
    Adapters(QString identifier, QString productName)
        : userDefaults(std::move(identifier)), keyStore(std::move(productName)), x11Workspace(x11), bus(x11),
          workspace(x11Workspace, bus), hotKeys(x11), mouseMonitor(x11), panelWindow(x11), terminals(captureConnection),
          elements(bus, workspace, &terminals),
          keyboardEvents(captureConnection, [this](qint64 process) { return elements.isFocusNoTerminal(process); }),
          pasteboard(captureConnection)
    {
    }

    // None of these does anything before it is used.
    FileUserDefaults userDefaults;
    SecretServiceKeyStore keyStore;
    LocalePreferredLanguages languages;
    QtClock clock;
    DBusSingleInstance singleInstance;
    X11Connection x11;
    X11Connection captureConnection; ///< what it listens to is not the others' business
    X11Workspace x11Workspace;
    ATSPIBus bus;
    WaylandWorkspace workspace;
    X11HotKeys hotKeys;
    PortalHotKeys portalHotKeys{x11}; ///< in place of those in a Wayland session
    DesktopKeyMonitor keyMonitor;
    DesktopTray tray{x11};
    X11MouseMonitor mouseMonitor;
    X11PanelWindow panelWindow;
    X11TerminalSelection terminals;
    ATSPIElements elements;
    X11KeyboardEvents keyboardEvents;
    X11Pasteboard pasteboard;
    // This one asks the session bus when it is made.
    std::optional<ATSPITrust> trust;
};

LinuxDesktop::LinuxDesktop(QString identifier, QString productName)
    : m_adapters(std::make_unique<Adapters>(std::move(identifier), std::move(productName)))
{
}

LinuxDesktop::~LinuxDesktop() = default;

UserDefaultsPort &LinuxDesktop::userDefaults()
{
    return m_adapters->userDefaults;
}

KeyStorePort &LinuxDesktop::keyStore()
{
    return m_adapters->keyStore;
}

PreferredLanguagesPort &LinuxDesktop::preferredLanguages()
{
    return m_adapters->languages;
}

ClockPort &LinuxDesktop::clock()
{
    return m_adapters->clock;
}

SingleInstancePort &LinuxDesktop::singleInstance()
{
    return m_adapters->singleInstance;
}

HotKeyPort &LinuxDesktop::hotKeys()
{
    // Also for a program that runs on the X server inside a Wayland session: what it holds there, only X programs
    // honour.
    if (WaylandSession::isRunning()) {
        return m_adapters->portalHotKeys;
    }
    return m_adapters->hotKeys;
}

KeyMonitorPort &LinuxDesktop::keyMonitor()
{
    return m_adapters->keyMonitor;
}

TrayPort &LinuxDesktop::tray()
{
    return m_adapters->tray;
}

WorkspacePort &LinuxDesktop::workspace()
{
    return m_adapters->workspace;
}

AccessibilityElementsPort &LinuxDesktop::accessibilityElements()
{
    return m_adapters->elements;
}

KeyboardEventPort &LinuxDesktop::keyboardEvents()
{
    return m_adapters->keyboardEvents;
}

ATSPITrust &LinuxDesktop::accessibilityTrust()
{
    if (!m_adapters->trust) {
        m_adapters->trust.emplace();
        m_adapters->x11Workspace.setPermissionPage([this] { m_adapters->trust->requestTrust(); });
    }
    return *m_adapters->trust;
}

PasteboardPort &LinuxDesktop::pasteboard()
{
    return m_adapters->pasteboard;
}

MouseMonitorPort &LinuxDesktop::mouseMonitor()
{
    return m_adapters->mouseMonitor;
}

PanelWindowPort &LinuxDesktop::panelWindow()
{
    return m_adapters->panelWindow;
}

void LinuxDesktop::warmUp()
{
    m_adapters->keyStore.warmUp();
    m_adapters->elements.warmUp();
    m_adapters->terminals.watch();
}

} // namespace orvesa
