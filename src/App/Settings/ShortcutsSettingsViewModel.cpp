#include "App/Settings/ShortcutsSettingsViewModel.h"

#include "Core/Localization.h"
#include "Core/SettingsStore.h"

using namespace Qt::StringLiterals;

namespace orvesa {

ShortcutsSettingsViewModel::ShortcutsSettingsViewModel(SettingsStore &settings, QObject *parent)
    : QObject(parent), m_settings(settings)
{
}

ShortcutsSettingsViewModel::~ShortcutsSettingsViewModel() = default;

void ShortcutsSettingsViewModel::setFeedbackMessage(const std::optional<QString> &message)
{
    if (message != m_feedbackMessage) {
        m_feedbackMessage = message;
        Q_EMIT feedbackChanged();
    }
}

bool ShortcutsSettingsViewModel::isCustomized(HotKeyAction action) const
{
    return m_settings.isCustomized(action);
}

void ShortcutsSettingsViewModel::reset(HotKeyAction action)
{
    if (!m_settings.isCustomized(action)) {
        return;
    }
    HotKeyOverrides overrides = m_settings.hotKeyOverrides();
    overrides.erase(action);
    m_settings.setHotKeyOverrides(std::move(overrides));
}

QString ShortcutsSettingsViewModel::symbolName(HotKeyAction action)
{
    switch (action) {
    case HotKeyAction::translateSelection:
        return u"globe"_s;
    case HotKeyAction::polishSelection:
        return u"wand.and.stars"_s;
    case HotKeyAction::ocrTranslate:
        break;
    }
    return u"text.viewfinder"_s;
}

QString ShortcutsSettingsViewModel::title(HotKeyAction action)
{
    return Localization::string(menuTitleKey(action));
}

QString ShortcutsSettingsViewModel::subtitle(HotKeyAction action)
{
    const int first = static_cast<int>(L10nKey::hotKeyTranslateSubtitle);
    return Localization::string(static_cast<L10nKey>(first + static_cast<int>(action)));
}

QString ShortcutsSettingsViewModel::resetHelp(HotKeyAction action)
{
    return Localization::format(L10nKey::resetHelp, defaultCombo(action).displayText());
}

} // namespace orvesa
