#include "App/AppDelegate.h"

#include "App/OutsideAction.h"
#include "App/Settings/SettingsWindowController.h"
#include "App/TranslationCoordinator.h"
#include "Core/HotKeyError.h"
#include "Core/HotKeyRecordingState.h"
#include "Core/Localization.h"
#include "Models/Text.h"
#include "Platform/AccessibilityTrustPort.h"
#include "Platform/TrayPort.h"

#include <QCoreApplication>
#include <QUuid>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace orvesa {

AppDelegate::AppDelegate(const Collaborators &collaborators)
    : m_with(collaborators), m_hotKeyService(collaborators.hotKeys)
{
}

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching()
{
    m_menuBarController = std::make_unique<MenuBarController>(
        m_with.coordinator, m_with.settings,
        MenuBarController::Actions{[this] { openSettings(); }, [] { QCoreApplication::quit(); }});
    showStatusItem();
    applyHotKeys();
    connect(&m_with.settings, &SettingsStore::hotKeyOverridesChanged, this, &AppDelegate::scheduleApplyHotKeys);
    connect(&m_with.settings, &SettingsStore::customPromptsChanged, this, &AppDelegate::scheduleApplyHotKeys);
    if (!m_with.trust.isTrusted()) {
        m_with.trust.requestTrust();
    }
}

void AppDelegate::showStatusItem()
{
    if (m_with.tray.isAvailable()) {
        m_menuBarController->showStatusItem();
        return;
    }
    qWarning(
        "OrvesaTranslate: this desktop has no tray for the icon; it appears when there is one. The shortcuts work, "
        "and starting the program again opens its settings.");
    m_with.tray.whenAvailable([this] { m_menuBarController->showStatusItem(); });
}

void AppDelegate::openSettings()
{
    if (!m_settingsWindowController) {
        m_settingsWindowController = std::make_unique<SettingsWindowController>(
            SettingsServices{m_with.settings, m_with.keychain, m_with.providers, m_with.trust, m_with.recording,
                             m_with.keyMonitor, m_with.workspace});
    }
    m_settingsWindowController->showWindow();
}

void AppDelegate::perform(HotKeyAction action)
{
    switch (action) {
    case HotKeyAction::translateSelection:
        m_with.coordinator.run(m_with.coordinator.translateTask(), std::chrono::milliseconds::zero());
        break;
    case HotKeyAction::polishSelection:
        m_with.coordinator.run(m_with.coordinator.polishTask(), std::chrono::milliseconds::zero());
        break;
    case HotKeyAction::ocrTranslate:
        m_with.coordinator.ocrTranslate();
        break;
    }
}

void AppDelegate::performNamed(const QString &name)
{
    const std::optional<OutsideAction> known = outsideAction(name);
    const OutsideAction *action = known ? &*known : nullptr;
    const auto *prompt = std::get_if<RunPrompt>(action);
    if (const auto *hotKeyAction = std::get_if<HotKeyAction>(action)) {
        perform(*hotKeyAction);
    } else if (std::get_if<OpenSettings>(action) != nullptr) {
        openSettings();
    } else if (prompt == nullptr || !runPrompt(prompt->nameOrID)) {
        qWarning("OrvesaTranslate: unknown action %s", qUtf8Printable(printable(name.left(100))));
    }
}

bool AppDelegate::runPrompt(const QString &nameOrID)
{
    const std::vector<CustomPrompt> &prompts = m_with.settings.customPrompts();
    const auto found = [&](auto &&matches) { return std::ranges::find_if(prompts, matches); };
    auto prompt = found([&](const CustomPrompt &candidate) { return candidate.shownName() == nameOrID; });
    if (const QUuid id = QUuid::fromString(nameOrID); prompt == prompts.end() && !id.isNull()) {
        prompt = found([&](const CustomPrompt &candidate) { return candidate.id == id; });
    }
    if (prompt == prompts.end()) {
        return false;
    }
    m_with.coordinator.run(prompt->task(), std::chrono::milliseconds::zero());
    return true;
}

void AppDelegate::scheduleApplyHotKeys()
{
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (m_with.settings.hotKeyOverrides() != m_appliedOverrides ||
                m_with.settings.customPrompts() != m_appliedPrompts) {
                applyHotKeys();
            }
        },
        Qt::QueuedConnection);
}

void AppDelegate::applyHotKeys()
{
    m_hotKeyService.unregisterAll();
    m_appliedOverrides = m_with.settings.hotKeyOverrides();
    m_appliedPrompts = m_with.settings.customPrompts();
    for (const HotKeyAction action : allCases<HotKeyAction>()) {
        const QString title = Localization::string(menuTitleKey(action));
        m_with.hotKeys.describe({HotKeyService::signature, hotKeyIdentifier(action)}, title);
        registerHotKey(
            hotKeyIdentifier(action), m_with.settings.combo(action), [this, action] { perform(action); }, title);
    }
    for (std::size_t index = 0; index < m_appliedPrompts.size(); ++index) {
        const CustomPrompt &prompt = m_appliedPrompts[index];
        if (!prompt.hotKey) {
            continue;
        }
        const quint32 identifier = promptHotKeyIdentifier(index);
        m_with.hotKeys.describe({HotKeyService::signature, identifier}, prompt.shownName());
        registerHotKey(
            identifier, *prompt.hotKey,
            [this, prompt] { m_with.coordinator.run(prompt.task(), std::chrono::milliseconds::zero()); },
            u"prompt "_s + prompt.shownName());
    }
}

void AppDelegate::registerHotKey(quint32 id, const KeyCombo &combo, std::function<void()> handler,
                                 const QString &failurePrefix)
{
    // The handler runs inside the desktop's event dispatch: it only schedules.
    auto scheduled = [this, combo, handler = std::move(handler)] {
        QMetaObject::invokeMethod(
            this,
            [this, combo, handler] {
                if (m_with.recording.isRecording()) {
                    m_with.recording.takeShortcut(combo);
                } else {
                    handler();
                }
            },
            Qt::QueuedConnection);
    };
    try {
        m_hotKeyService.registerHotKey(id, combo, std::move(scheduled));
    } catch (const HotKeyError &error) {
        // Names and labels come from a file that anybody may have written into.
        qWarning("OrvesaTranslate: failed to register hotkey %s for %s: %s",
                 qUtf8Printable(printable(combo.displayText())), qUtf8Printable(printable(failurePrefix)),
                 qUtf8Printable(error.errorDescription()));
    }
}

} // namespace orvesa
