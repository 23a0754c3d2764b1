#pragma once

// The program's permanent element: the icon in the menu bar or tray, with its menu.
//
// The menu is built afresh, never edited in place, whenever the interface language or the custom prompts change. A tray
// that draws the menu itself, as it is told of it over the session bus, gets one of its own, since it reads titles in
// another way than Qt. Main thread only; collaborators must outlive the controller.

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

    /// Who draws a menu, which decides how a title is written that is to read as it is.
    enum class MenuHost { widgets, bus };

    MenuBarController(TranslationCoordinator &coordinator, const SettingsStore &settings, Actions actions);
    ~MenuBarController() override;

    /// Shows the status item. Not before the desktop has a place for it: Qt looks for one only once.
    void showStatusItem();
    /// A new menu for the settings of this moment.
    [[nodiscard]] std::unique_ptr<QMenu> build(MenuHost host = MenuHost::widgets);
    /// The menu that the program itself shows now.
    [[nodiscard]] const QMenu &menu() const { return *m_menu; }

private:
    void rebuild();
    void popUp();
    void addPrompts(QMenu &menu, MenuHost host);
    void runCustomPrompt(const QUuid &id);

    TranslationCoordinator &m_coordinator;
    const SettingsStore &m_settings;
    Actions m_actions;
    AppLanguage m_shownLanguage;
    std::vector<CustomPrompt> m_shownPrompts;
    std::unique_ptr<QMenu> m_menu;
    std::unique_ptr<QMenu> m_toldMenu; ///< for a tray on the session bus; null without one
    struct StatusItem {
        QSystemTrayIcon item;
        StatusItemIcon icon{item};
    };
    std::unique_ptr<StatusItem> m_statusItem;
};

} // namespace orvesa
