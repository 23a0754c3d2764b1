#include "App/MenuBarController.h"

#include "App/TranslationCoordinator.h"
#include "Core/Localization.h"
#include "Core/SettingsStore.h"
#include "UI/Style.h"

#include <QCoreApplication>
#include <QCursor>
#include <QGuiApplication>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace orvesa {

namespace {

/// A title that no menu is too narrow for.
QString shortened(const QString &title)
{
    constexpr qsizetype longest = 80;
    if (title.size() <= longest) {
        return title;
    }
    return title.left(title.at(longest - 1).isHighSurrogate() ? longest - 1 : longest) + u'…';
}

bool isLineBreak(QChar character)
{
    return character == u'\n' || character == u'\r' || character == u'\v' || character == u'\f' ||
           character == QChar::LineSeparator || character == QChar::ParagraphSeparator;
}

/// The title with which the host's menu reads as the name. A name is data: nothing in it marks a key, and no tab sets
/// its end apart as a shortcut.
QString titleOf(const QString &name, MenuBarController::MenuHost host)
{
    QString title = shortened(name);
    for (QChar &character : title) {
        if (character == u'\t' || isLineBreak(character)) {
            character = u' ';
        }
    }
    if (host == MenuBarController::MenuHost::widgets) {
        return title.replace(u'&', u"&&"_s);
    }
    // The bus marks by underscores. Qt makes one of the first ampersand, unless it is the last character, and tells the
    // others as they are: so the first is written twice and becomes a mark on the ampersand itself.
    title.replace(u'_', u"__"_s);
    const qsizetype first = title.indexOf(u'&');
    return first < 0 ? title : title.insert(first, u'&');
}

/// Whether the tray draws the menu as it is told of it over the session bus: then Qt has made a menu of the platform's
/// from ours. It does so on macOS too, whose menus take no other marks than Qt's own.
bool isToldOverTheBus(QMenu &menu)
{
    return menu.platformMenu() != nullptr && QGuiApplication::platformName() != "cocoa"_L1;
}

/// It may be open at this moment, with one of its actions on the call stack.
void discard(std::unique_ptr<QMenu> menu)
{
    if (menu) {
        menu.release()->deleteLater();
    }
}

/// Menus do not inherit fonts from the menus that they belong to.
void setInterfaceFont(QMenu &menu)
{
    const QFont font = Style::inLanguage(menu.font(), Style::interfaceLanguage());
    menu.setFont(font);
    const auto submenus = menu.findChildren<QMenu *>();
    for (QMenu *submenu : submenus) {
        submenu->setFont(font);
    }
}

using StatusMenu = FloatingResultPanelController::StatusMenu;

} // namespace

MenuBarController::MenuBarController(TranslationCoordinator &coordinator, const SettingsStore &settings,
                                     Actions actions)
    : m_coordinator(coordinator), m_settings(settings), m_actions(std::move(actions)),
      m_shownLanguage(settings.appLanguage()), m_shownPrompts(settings.customPrompts())
{
    rebuild();
    connect(&settings, &SettingsStore::appLanguageChanged, this, [this] {
        if (m_settings.appLanguage() != m_shownLanguage) {
            rebuild();
        }
    });
    connect(&settings, &SettingsStore::customPromptsChanged, this, [this] {
        if (m_settings.customPrompts() != m_shownPrompts) {
            rebuild();
        }
    });
}

MenuBarController::~MenuBarController() = default;

void MenuBarController::showStatusItem()
{
    m_statusItem = std::make_unique<StatusItem>();
    QSystemTrayIcon &item = m_statusItem->item;
    item.setToolTip(QCoreApplication::applicationName());
    item.setContextMenu(m_menu.get());
    if (isToldOverTheBus(*m_menu)) {
        m_toldMenu = build(MenuHost::bus);
        item.setContextMenu(m_toldMenu.get());
    }
    connect(&item, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
        if (reason == QSystemTrayIcon::Trigger) {
            popUp();
        }
    });
    item.show();
}

void MenuBarController::rebuild()
{
    m_shownLanguage = m_settings.appLanguage();
    m_shownPrompts = m_settings.customPrompts();
    std::unique_ptr<QMenu> old = std::exchange(m_menu, build());
    std::unique_ptr<QMenu> oldTold;
    if (m_toldMenu) {
        oldTold = std::exchange(m_toldMenu, build(MenuHost::bus));
    }
    if (m_statusItem) {
        m_statusItem->item.setContextMenu(m_toldMenu ? m_toldMenu.get() : m_menu.get());
    }
    if (old) {
        m_coordinator.noteStatusMenu(StatusMenu::closed);
    }
    discard(std::move(old));
    discard(std::move(oldTold));
}

void MenuBarController::popUp()
{
    // Beside the icon where its place is known, as a menu of a menu bar; else where the click was.
    const QRect icon = m_statusItem->item.geometry();
    m_menu->popup(icon.isEmpty() ? QCursor::pos() : icon.bottomLeft() + QPoint(0, 1));
}

std::unique_ptr<QMenu> MenuBarController::build(MenuHost host)
{
    auto menu = std::make_unique<QMenu>();
    if (host == MenuHost::widgets) {
        // Not before it is shown: the first look at a font reads all that are installed, as long as half of the start
        // takes.
        connect(menu.get(), &QMenu::aboutToShow, menu.get(), [shown = menu.get()] { setInterfaceFont(*shown); });
    }
    // A tray that shows the menu itself says so: what is clicked there is clicked in our menu.
    connect(menu.get(), &QMenu::aboutToShow, this, [this] { m_coordinator.noteStatusMenu(StatusMenu::open); });
    connect(menu.get(), &QMenu::aboutToHide, this, [this] { m_coordinator.noteStatusMenu(StatusMenu::closed); });
    const auto add = [&](L10nKey key, auto &&action) {
        connect(menu->addAction(Localization::string(key)), &QAction::triggered, this,
                std::forward<decltype(action)>(action));
    };
    add(L10nKey::menuTranslateSelection,
        [this] { m_coordinator.run(m_coordinator.translateTask(), TranslationCoordinator::menuDelay); });
    add(L10nKey::menuPolishSelection,
        [this] { m_coordinator.run(m_coordinator.polishTask(), TranslationCoordinator::menuDelay); });
    add(L10nKey::menuOCRTranslate, [this] { m_coordinator.ocrTranslate(); });
    addPrompts(*menu, host);
    menu->addSeparator();
    add(L10nKey::menuSettings, [this] { m_actions.openSettings(); });
    menu->addSeparator();
    add(L10nKey::menuQuit, [this] { m_actions.quit(); });
    return menu;
}

void MenuBarController::addPrompts(QMenu &menu, MenuHost host)
{
    if (m_settings.customPrompts().empty()) {
        return;
    }
    menu.addSeparator();
    QMenu *submenu = menu.addMenu(Localization::string(L10nKey::menuPrompts));
    if (host == MenuHost::widgets) {
        // More prompts than the screen is high scroll, where the style would set column beside column.
        submenu->setStyleSheet(u"QMenu { menu-scrollable: 1; }"_s);
    }
    for (const CustomPrompt &prompt : m_settings.customPrompts()) {
        const QString name = prompt.name.isEmpty() ? Localization::string(L10nKey::promptUntitled) : prompt.name;
        QAction *action = submenu->addAction(titleOf(name, host));
        connect(action, &QAction::triggered, this, [this, id = prompt.id] { runCustomPrompt(id); });
    }
}

void MenuBarController::runCustomPrompt(const QUuid &id)
{
    const std::vector<CustomPrompt> &prompts = m_settings.customPrompts();
    const auto found =
        std::find_if(prompts.begin(), prompts.end(), [&](const CustomPrompt &prompt) { return prompt.id == id; });
    if (found != prompts.end()) {
        m_coordinator.run(found->task(), TranslationCoordinator::menuDelay);
    }
}

} // namespace orvesa
