#include "App/Settings/SettingsWindowController.h"

#include "App/Settings/SettingsView.h"

namespace orvesa {

SettingsWindowController::SettingsWindowController(SettingsStore &settings, KeychainService &keychain)
    : m_settings(settings), m_keychain(keychain)
{
}

SettingsWindowController::~SettingsWindowController() = default;

void SettingsWindowController::showWindow()
{
    if (!m_view) {
        m_view = std::make_unique<SettingsView>(m_settings, m_keychain);
    }
    m_view->refresh();
    m_view->show();
    m_view->raise();
    m_view->activateWindow();
}

} // namespace orvesa
