#pragma once

// The page with the interface language, the theme, the defaults of requests, and the state of the permission.
//
// It keeps no state: every control writes its setting at once, and everything is shown anew when a setting changes or
// the window comes to the front. Main thread only.

#include "App/Settings/SettingsServices.h"

#include <QWidget>

#include <vector>

class QLabel;

namespace orvesa {

class Picker;
class SettingsCard;
class StatusLabel;
class Switch;
class TextButton;
class ThemeSwatch;
class WrappingLabel;

class GeneralSettingsView final : public QWidget {
    Q_OBJECT

public:
    GeneralSettingsView(SettingsServices services, QWidget *parent = nullptr);

    /// Shows the settings and the permission of this moment.
    void refresh();

protected:
    bool event(QEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    [[nodiscard]] SettingsCard *makeGeneralCard();
    [[nodiscard]] SettingsCard *makeRequestsCard();
    [[nodiscard]] SettingsCard *makePermissionsCard();
    void wireControls();
    void refreshTexts();
    void refreshChoices();
    void refreshPermission();

    SettingsServices m_services;
    SettingsCard *m_generalCard = nullptr;
    QLabel *m_languageCaption = nullptr;
    Picker *m_language = nullptr;
    QLabel *m_themeCaption = nullptr;
    std::vector<ThemeSwatch *> m_themes;
    SettingsCard *m_requestsCard = nullptr;
    QLabel *m_providerCaption = nullptr;
    Picker *m_provider = nullptr;
    QLabel *m_targetCaption = nullptr;
    Picker *m_target = nullptr;
    QLabel *m_polishCaption = nullptr;
    Picker *m_polish = nullptr;
    QLabel *m_thinkingCaption = nullptr;
    Switch *m_thinking = nullptr;
    WrappingLabel *m_thinkingNote = nullptr;
    SettingsCard *m_permissionsCard = nullptr;
    StatusLabel *m_permission = nullptr;
    TextButton *m_openSystemSettings = nullptr;
};

} // namespace orvesa
