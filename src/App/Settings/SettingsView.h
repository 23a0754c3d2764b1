#pragma once

// The settings window's content: the sidebar, and the page of the selected section.
//
// A page is made when its section is selected and goes when another one is. Main thread only.

#include "App/Settings/SettingsSection.h"
#include "App/Settings/SettingsServices.h"

#include <QWidget>

class QLabel;
class QScrollArea;
class QVBoxLayout;

namespace orvesa {

class ProviderKeyStatus;
class SettingsSidebar;

class SettingsView final : public QWidget {
    Q_OBJECT

public:
    static constexpr int viewWidth = 780;
    static constexpr int viewHeight = 560;
    static constexpr int sidebarWidth = 208;

    SettingsView(SettingsServices services, ProviderKeyStatus &keyStatus, QWidget *parent = nullptr);

    [[nodiscard]] SettingsSection selection() const { return m_selection; }
    void setSelection(SettingsSection section);
    [[nodiscard]] SettingsSidebar &sidebar() const { return *m_sidebar; }
    [[nodiscard]] QWidget &page() const { return *m_page; }

protected:
    void changeEvent(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;

private:
    [[nodiscard]] QWidget *makePage(SettingsSection section);
    void buildScrollView();
    void showPage();
    void refreshTexts();
    void refreshColors();

    SettingsServices m_services;
    ProviderKeyStatus &m_keyStatus;
    SettingsSection m_selection = SettingsSection::general;
    SettingsSidebar *m_sidebar;
    QScrollArea *m_scrollView;
    QLabel *m_title = nullptr;
    QLabel *m_subtitle = nullptr;
    QVBoxLayout *m_column = nullptr;
    QWidget *m_page = nullptr;
};

} // namespace orvesa
