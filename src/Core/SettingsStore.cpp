#include "Core/SettingsStore.h"

#include "Core/Localization.h"
#include "Models/Text.h"

#include <algorithm>
#include <utility>

namespace orvesa {

SettingsStore::SettingsStore(UserDefaultsPort &defaults, const PreferredLanguagesPort &languages, QObject *parent)
    : QObject(parent), m_defaults(defaults), m_languages(languages), m_values(readSettings(defaults, languages))
{
    Localization::setCurrent(m_values.appLanguage);
    m_defaults.setExternalChangeHandler([this] { reload(); });
}

SettingsStore::~SettingsStore()
{
    m_defaults.setExternalChangeHandler({});
}

void SettingsStore::setDefaultProvider(AIProviderType provider)
{
    Q_EMIT willChange();
    m_values.defaultProvider = provider;
    m_defaults.set(SettingsKey::defaultProvider, rawValue(provider));
    Q_EMIT defaultProviderChanged();
}

void SettingsStore::setTargetLanguage(TargetLanguage language)
{
    Q_EMIT willChange();
    m_values.targetLanguage = language;
    m_defaults.set(SettingsKey::targetLanguage, rawValue(language));
    Q_EMIT targetLanguageChanged();
}

void SettingsStore::setPolishMode(PolishMode mode)
{
    Q_EMIT willChange();
    m_values.polishMode = mode;
    m_defaults.set(SettingsKey::polishMode, rawValue(mode));
    Q_EMIT polishModeChanged();
}

void SettingsStore::setThinkingEnabled(bool enabled)
{
    Q_EMIT willChange();
    m_values.thinkingEnabled = enabled;
    m_defaults.set(SettingsKey::thinkingEnabled, enabled);
    Q_EMIT thinkingEnabledChanged();
}

void SettingsStore::setHotKeyOverrides(HotKeyOverrides overrides)
{
    Q_EMIT willChange();
    m_values.hotKeyOverrides = std::move(overrides);
    m_defaults.set(SettingsKey::hotKeys, encodedHotKeys(m_values.hotKeyOverrides));
    Q_EMIT hotKeyOverridesChanged();
}

void SettingsStore::setAppLanguage(AppLanguage language)
{
    Q_EMIT willChange();
    m_values.appLanguage = language;
    m_defaults.set(SettingsKey::appLanguage, rawValue(language));
    Localization::setCurrent(language);
    Q_EMIT appLanguageChanged();
}

void SettingsStore::setTheme(AppTheme theme)
{
    Q_EMIT willChange();
    m_values.theme = theme;
    m_defaults.set(SettingsKey::theme, rawValue(theme));
    Q_EMIT themeChanged();
}

void SettingsStore::setCustomPrompts(std::vector<CustomPrompt> prompts)
{
    Q_EMIT willChange();
    m_values.customPrompts = std::move(prompts);
    m_defaults.set(SettingsKey::customPrompts, encodedPrompts(m_values.customPrompts));
    Q_EMIT customPromptsChanged();
}

QString SettingsStore::model(AIProviderType provider) const
{
    const std::optional<QString> stored = storedModel(provider);
    return stored ? *stored : defaultModel(provider);
}

std::optional<QString> SettingsStore::storedModel(AIProviderType provider) const
{
    return storedText(m_defaults, SettingsKey::model(provider));
}

void SettingsStore::setModel(const QString &model, AIProviderType provider)
{
    const QString key = SettingsKey::model(provider);
    if (const QStringView trimmed = trimmedWhitespaceAndNewlines(model); trimmed.isEmpty()) {
        m_defaults.remove(key);
    } else {
        m_defaults.set(key, trimmed.toString());
    }
    Q_EMIT willChange();
}

AIProviderConfig SettingsStore::activeConfig() const
{
    return {
        .providerType = m_values.defaultProvider,
        .model = model(m_values.defaultProvider),
        .targetLanguage = rawValue(m_values.targetLanguage),
        .thinkingEnabled = m_values.thinkingEnabled,
    };
}

KeyCombo SettingsStore::combo(HotKeyAction action) const
{
    const auto found = m_values.hotKeyOverrides.find(action);
    return found == m_values.hotKeyOverrides.end() ? defaultCombo(action) : found->second;
}

bool SettingsStore::isCustomized(HotKeyAction action) const
{
    return m_values.hotKeyOverrides.contains(action);
}

void SettingsStore::setCombo(const KeyCombo &combo, HotKeyAction action)
{
    HotKeyOverrides overrides = m_values.hotKeyOverrides;
    if (combo.conflictsWith(defaultCombo(action))) {
        overrides.erase(action);
    } else {
        overrides.insert_or_assign(action, combo);
    }
    setHotKeyOverrides(std::move(overrides));
}

bool SettingsStore::isComboTaken(const KeyCombo &candidate, std::optional<HotKeyAction> excludingAction,
                                 std::optional<QUuid> excludingPromptID) const
{
    for (const HotKeyAction action : allCases<HotKeyAction>()) {
        if (action != excludingAction && combo(action).conflictsWith(candidate)) {
            return true;
        }
    }
    return std::ranges::any_of(m_values.customPrompts, [&](const CustomPrompt &prompt) {
        return prompt.id != excludingPromptID && prompt.hotKey && prompt.hotKey->conflictsWith(candidate);
    });
}

void SettingsStore::reload()
{
    SettingsValues values = readSettings(m_defaults, m_languages);
    // Sent in any case, because a model may be what changed, and models are not held here.
    Q_EMIT willChange();
    const SettingsValues previous = std::exchange(m_values, std::move(values));
    Localization::setCurrent(m_values.appLanguage);
    // Every comparison comes before the first signal, whose observer may itself change a preference.
    using Signal = void (SettingsStore::*)();
    std::vector<Signal> changes;
    const auto compare = [&](auto field, Signal changed) {
        if (m_values.*field != previous.*field) {
            changes.push_back(changed);
        }
    };
    compare(&SettingsValues::defaultProvider, &SettingsStore::defaultProviderChanged);
    compare(&SettingsValues::targetLanguage, &SettingsStore::targetLanguageChanged);
    compare(&SettingsValues::polishMode, &SettingsStore::polishModeChanged);
    compare(&SettingsValues::thinkingEnabled, &SettingsStore::thinkingEnabledChanged);
    compare(&SettingsValues::hotKeyOverrides, &SettingsStore::hotKeyOverridesChanged);
    compare(&SettingsValues::appLanguage, &SettingsStore::appLanguageChanged);
    compare(&SettingsValues::theme, &SettingsStore::themeChanged);
    compare(&SettingsValues::customPrompts, &SettingsStore::customPromptsChanged);
    for (const Signal changed : changes) {
        Q_EMIT(this->*changed)();
    }
}

} // namespace orvesa
