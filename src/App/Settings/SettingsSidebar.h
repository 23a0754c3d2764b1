#pragma once

// The list of sections on the left of the settings window. Main thread only.

#include "App/Settings/SettingsSection.h"

#include <QWidget>

#include <functional>
#include <vector>

class QLabel;

namespace orvesa {

class ProviderKeyStatus;
class SettingsStore;
class SidebarItem;

class SettingsSidebar final : public QWidget {
    Q_OBJECT

public:
    /// `onSelect` is told which section the user wants. Both collaborators must outlive the sidebar.
    SettingsSidebar(const SettingsStore &settings, ProviderKeyStatus &keyStatus,
                    std::function<void(SettingsSection)> onSelect, QWidget *parent = nullptr);

    void setSelection(SettingsSection section);
    [[nodiscard]] SidebarItem &item(SettingsSection section) const;

protected:
    void paintEvent(QPaintEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void refreshTexts();
    void refreshBadge();

    const SettingsStore &m_settings;
    ProviderKeyStatus &m_keyStatus;
    QLabel *m_header;
    std::vector<SidebarItem *> m_items;
};

} // namespace orvesa
