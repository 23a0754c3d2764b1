#pragma once

// The program's permanent element: the icon in the menu bar or tray, with its menu.
//
// The menu is built afresh, never edited in place, whenever the interface language or the custom prompts change. Main
// thread only; collaborators must outlive the controller.

#include "App/StatusItemIcon.h"
#include "Core/AppLanguage.h"
#include "Models/CustomPrompt.h"

#include <QMenu>
#include <QObject>
#include <QSystemTrayIcon>

#include <functional>
#include <memory>
#include <vector>

namespace orvesa {

class SettingsStore;
class TranslationCoordinator;

class MenuBarController final : public QObject {
    Q_OBJECT

public:
    struct Actions {
        std::function<void()> openSettings;
        std::function<void()> quit;
    };

    MenuBarController(TranslationCoordinator &coordinator, const SettingsStore &settings, Actions actions);
    ~MenuBarController() override;

    /// Shows the status item. Not before the desktop has a place for it: Qt looks for one only once.
    void showStatusItem();
    /// A new menu for the settings of this moment.
    [[nodiscard]] std::unique_ptr<QMenu> build();
    /// The menu that the status item shows now.
    [[nodiscard]] const QMenu &menu() const { return *m_menu; }

private:
    void rebuild();
    void popUp();
    void addPrompts(QMenu &menu);
    void runCustomPrompt(const QUuid &id);

    TranslationCoordinator &m_coordinator;
    const SettingsStore &m_settings;
    Actions m_actions;
    AppLanguage m_shownLanguage;
    std::vector<CustomPrompt> m_shownPrompts;
    std::unique_ptr<QMenu> m_menu;
    struct StatusItem {
        QSystemTrayIcon item;
        StatusItemIcon icon{item};
    };
    std::unique_ptr<StatusItem> m_statusItem;
};

} // namespace orvesa
