#pragma once

// Wires the utility once it is launched: menu, global shortcuts, settings window, permission.
//
// Created once at process start, lives until the process ends. Shortcuts are registered from scratch on every change of
// the overrides or prompts. Main thread only; collaborators must outlive it.

#include "App/MenuBarController.h"
#include "Core/HotKeyService.h"
#include "Core/SettingsStore.h"

#include <QObject>

#include <memory>

namespace orvesa {

class AccessibilityTrustPort;
class AIProviderSource;
class HotKeyRecordingState;
class KeychainService;
class KeyMonitorPort;
class SettingsWindowController;
class TrayPort;
class WorkspacePort;

class AppDelegate final : public QObject {
    Q_OBJECT

public:
    struct Collaborators {
        TranslationCoordinator &coordinator;
        SettingsStore &settings;
        KeychainService &keychain;
        const AIProviderSource &providers;
        HotKeyPort &hotKeys;
        HotKeyRecordingState &recording;
        KeyMonitorPort &keyMonitor;
        AccessibilityTrustPort &trust;
        WorkspacePort &workspace;
        TrayPort &tray;
    };

    explicit AppDelegate(const Collaborators &collaborators);
    ~AppDelegate() override;

    void applicationDidFinishLaunching();
    void openSettings();
    void perform(HotKeyAction action);
    /// An action by its outside name (App/OutsideAction.h). Unknown names are ignored with a log line.
    void performNamed(const QString &name);
    /// The identifiers of the shortcuts that the keyboard gives to the program now.
    [[nodiscard]] QList<quint32> heldShortcuts() const { return m_hotKeyService.registered(); }

private:
    void showStatusItem();
    bool runPrompt(const QString &nameOrID);
    void applyHotKeys();
    void scheduleApplyHotKeys();
    void registerHotKey(quint32 id, const KeyCombo &combo, std::function<void()> handler, const QString &failurePrefix);

    Collaborators m_with;
    HotKeyService m_hotKeyService;
    HotKeyOverrides m_appliedOverrides;
    std::vector<CustomPrompt> m_appliedPrompts;
    std::unique_ptr<MenuBarController> m_menuBarController;
    std::unique_ptr<SettingsWindowController> m_settingsWindowController;
};

} // namespace orvesa
