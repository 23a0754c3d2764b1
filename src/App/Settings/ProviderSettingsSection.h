#pragma once

// One service's card: its API key, the test of it, and the model. Draws and forwards; the view model decides.
//
// The key's field is never filled from the key store. Main thread only.

#include "App/Settings/ProviderSettingsViewModel.h"
#include "App/Settings/SettingsCard.h"
#include "App/Settings/SettingsServices.h"

class QHBoxLayout;
class QLabel;

namespace orvesa {

class LinkButton;
class SecretField;
class Spinner;
class StatusLabel;
class SymbolButton;
class TextButton;
class TextField;

class ProviderSettingsSection final : public SettingsCard {
    Q_OBJECT

public:
    ProviderSettingsSection(AIProviderType type, const SettingsServices &services, ProviderKeyStatus &keyStatus,
                            QWidget *parent = nullptr);

    [[nodiscard]] ProviderSettingsViewModel &model() { return m_model; }

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void buildHeader(const SettingsServices &services);
    void buildKeyRow();
    void buildFeedback();
    void buildModelRow();
    void wireControls();
    void openModelMenu();
    void refreshTexts();
    void refresh();

    ProviderSettingsViewModel m_model;
    LinkButton *m_getKey = nullptr;
    StatusLabel *m_keySaved = nullptr;
    QLabel *m_keyCaption = nullptr;
    SecretField *m_key = nullptr;
    TextButton *m_save = nullptr;
    TextButton *m_test = nullptr;
    TextButton *m_clear = nullptr;
    QWidget *m_feedback = nullptr;
    Spinner *m_spinner = nullptr;
    StatusLabel *m_status = nullptr;
    QLabel *m_modelCaption = nullptr;
    TextField *m_modelField = nullptr;
    SymbolButton *m_modelMenu = nullptr;
};

} // namespace orvesa
