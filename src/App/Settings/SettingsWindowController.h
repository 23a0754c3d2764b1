#pragma once

// The settings window: made on the first request, kept until the program ends, and shown again on later requests.
//
// Main thread only; the services must outlive the controller.

#include "App/Settings/ProviderKeyStatus.h"
#include "App/Settings/SettingsServices.h"

#include <memory>

class QMainWindow;

namespace orvesa {

class SettingsView;

class SettingsWindowController final {
public:
    explicit SettingsWindowController(const SettingsServices &services);
    ~SettingsWindowController();
    SettingsWindowController(const SettingsWindowController &) = delete;
    SettingsWindowController &operator=(const SettingsWindowController &) = delete;

    /// Shows the window in front of others, with the keyboard.
    void showWindow();
    [[nodiscard]] QMainWindow &window() const { return *m_window; }
    [[nodiscard]] SettingsView &view() const { return *m_view; }

private:
    ProviderKeyStatus m_keyStatus;
    std::unique_ptr<QMainWindow> m_window;
    SettingsView *m_view; ///< the window's
};

} // namespace orvesa
