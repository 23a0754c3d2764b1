#pragma once

// What the settings window's pages work on. References only; everything must outlive the window. Main thread only.

namespace orvesa {

class AccessibilityTrustPort;
class AIProviderSource;
class HotKeyRecordingState;
class KeychainService;
class KeyMonitorPort;
class SettingsStore;
class WorkspacePort;

struct SettingsServices {
    SettingsStore &settings;
    const KeychainService &keychain;
    const AIProviderSource &providers;
    const AccessibilityTrustPort &trust;
    HotKeyRecordingState &recordingState;
    KeyMonitorPort &keyMonitor;
    WorkspacePort &workspace;
};

} // namespace orvesa
