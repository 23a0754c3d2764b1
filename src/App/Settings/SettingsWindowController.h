#pragma once

// Shows the settings window; made on the first request and kept. Main thread only.

#include <memory>

namespace orvesa {

class KeychainService;
class SettingsStore;
class SettingsView;

class SettingsWindowController final {
public:
    /// Both must outlive the controller.
    SettingsWindowController(SettingsStore &settings, KeychainService &keychain);
    ~SettingsWindowController();
    SettingsWindowController(const SettingsWindowController &) = delete;
    SettingsWindowController &operator=(const SettingsWindowController &) = delete;

    /// Shows the window in front of others, with the keyboard.
    void showWindow();

private:
    SettingsStore &m_settings;
    KeychainService &m_keychain;
    std::unique_ptr<SettingsView> m_view;
};

} // namespace orvesa
