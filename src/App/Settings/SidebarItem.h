#pragma once

// One section in the sidebar: its icon, its title, and the badge where a key is missing.
//
// Exactly one of the items beside each other is selected; the arrow keys move the selection. Main thread only.

#include "App/Settings/SettingsSection.h"

#include <QAbstractButton>

#include <functional>

namespace orvesa {

class Capsule;

class SidebarItem final : public QAbstractButton {
    Q_OBJECT

public:
    SidebarItem(SettingsSection section, std::function<void()> onSelect, QWidget *parent = nullptr);

    [[nodiscard]] SettingsSection section() const { return m_section; }
    [[nodiscard]] bool isSelected() const { return isChecked(); }
    [[nodiscard]] bool showsNoKeyBadge() const;
    void setSelected(bool isSelected);
    void setShowsNoKeyBadge(bool showsBadge);
    /// Texts in the interface language.
    void refresh();

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void enterEvent(QEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;

private:
    [[nodiscard]] QFont titleFont(bool isSelected) const;
    [[nodiscard]] bool badgeStandsBesideTitle() const;
    void placeBadge();

    SettingsSection m_section;
    Capsule *m_badge = nullptr; ///< made when it is wanted for the first time
};

} // namespace orvesa
