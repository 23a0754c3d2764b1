#pragma once

// The settings window: interface language, service, target language, and one key per service.
//
// Live: a change is saved at once and the texts follow the interface language. Keys are never read back into the
// fields. Main thread only; settings and key store must outlive it.

#include "AI/AIProviderType.h"

#include <QWidget>

#include <vector>

class QComboBox;
class QLabel;

namespace orvesa {

class KeychainService;
class ProviderSettingsSection;
class SettingsStore;

class SettingsView final : public QWidget {
    Q_OBJECT

public:
    SettingsView(SettingsStore &settings, KeychainService &keychain);

    /// Takes texts and choices from the settings, and asks the key store which keys are there.
    void refresh();

private:
    void buildPickers();

    SettingsStore &m_settings;
    QLabel *m_languageLabel;
    QComboBox *m_language;
    QLabel *m_providerLabel;
    QComboBox *m_provider;
    QLabel *m_targetLabel;
    QComboBox *m_target;
    std::vector<ProviderSettingsSection *> m_sections;
};

} // namespace orvesa
