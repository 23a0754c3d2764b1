#pragma once

// The page with the shortcuts of the built-in actions. Main thread only.

#include "App/Settings/SettingsServices.h"
#include "App/Settings/ShortcutsSettingsViewModel.h"

#include <QWidget>

namespace orvesa {

class SettingsCard;
class StatusLabel;
class WrappingLabel;

class ShortcutsSettingsView final : public QWidget {
    Q_OBJECT

public:
    ShortcutsSettingsView(const SettingsServices &services, QWidget *parent = nullptr);

protected:
    void hideEvent(QHideEvent *event) override;

private:
    void refreshTexts();
    void refreshFeedback();

    ShortcutsSettingsViewModel m_model;
    SettingsCard *m_card;
    StatusLabel *m_feedback;
    WrappingLabel *m_info;
};

} // namespace orvesa
