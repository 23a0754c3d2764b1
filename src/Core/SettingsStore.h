#pragma once

// Every preference of the user: read once at creation, observable, written back the moment it changes.
//
// Each setter first emits willChange(), then sets, then writes, then emits the property's own changed signal, also when
// the new value equals the old one; an observer that acts on real changes only keeps the value it last acted on and
// compares. When another process changes the database, the store reads everything anew, writes nothing, and sends
// willChange() followed by the changed signal of each property that differs. Per-provider models are not properties:
// they are read and written on every access. API keys are not kept here. Main thread only.

#include "AI/AIProviderConfig.h"
#include "Core/SettingsValues.h"
#include "Platform/PreferredLanguagesPort.h"
#include "Platform/UserDefaultsPort.h"

#include <QObject>

#include <optional>
#include <vector>

namespace orvesa {

class SettingsStore final : public QObject {
    Q_OBJECT

public:
    /// Reads every key; what is missing or not understood takes its default. Writes nothing. Sets the current
    /// interface language. Both ports must outlive the store.
    SettingsStore(UserDefaultsPort &defaults, const PreferredLanguagesPort &languages, QObject *parent = nullptr);
    ~SettingsStore() override;
    Q_DISABLE_COPY_MOVE(SettingsStore)

    [[nodiscard]] AIProviderType defaultProvider() const { return m_values.defaultProvider; }
    [[nodiscard]] TargetLanguage targetLanguage() const { return m_values.targetLanguage; }
    [[nodiscard]] PolishMode polishMode() const { return m_values.polishMode; }
    [[nodiscard]] bool thinkingEnabled() const { return m_values.thinkingEnabled; }
    [[nodiscard]] const HotKeyOverrides &hotKeyOverrides() const { return m_values.hotKeyOverrides; }
    [[nodiscard]] AppLanguage appLanguage() const { return m_values.appLanguage; }
    [[nodiscard]] AppTheme theme() const { return m_values.theme; }
    [[nodiscard]] const std::vector<CustomPrompt> &customPrompts() const { return m_values.customPrompts; }

    void setDefaultProvider(AIProviderType provider);
    void setTargetLanguage(TargetLanguage language);
    void setPolishMode(PolishMode mode);
    void setThinkingEnabled(bool enabled);
    void setHotKeyOverrides(HotKeyOverrides overrides);
    void setAppLanguage(AppLanguage language);
    void setTheme(AppTheme theme);
    void setCustomPrompts(std::vector<CustomPrompt> prompts);

    /// The stored model, or the provider's default one.
    [[nodiscard]] QString model(AIProviderType provider) const;
    /// The model that is stored; absent where the default one applies.
    [[nodiscard]] std::optional<QString> storedModel(AIProviderType provider) const;
    /// Stores the model without outer blanks; a blank one removes the choice.
    void setModel(const QString &model, AIProviderType provider);
    /// The configuration of the next request.
    [[nodiscard]] AIProviderConfig activeConfig() const;

    /// The effective shortcut: the override, else the default.
    [[nodiscard]] KeyCombo combo(HotKeyAction action) const;
    [[nodiscard]] bool isCustomized(HotKeyAction action) const;
    /// A combination equal to the default in key and modifiers removes the override.
    void setCombo(const KeyCombo &combo, HotKeyAction action);
    /// Whether another action or prompt has this key and these modifiers.
    [[nodiscard]] bool isComboTaken(const KeyCombo &candidate, std::optional<HotKeyAction> excludingAction,
                                    std::optional<QUuid> excludingPromptID) const;

Q_SIGNALS:
    void willChange();
    void defaultProviderChanged();
    void targetLanguageChanged();
    void polishModeChanged();
    void thinkingEnabledChanged();
    void hotKeyOverridesChanged();
    void appLanguageChanged();
    void themeChanged();
    void customPromptsChanged();

private:
    void reload();

    UserDefaultsPort &m_defaults;
    const PreferredLanguagesPort &m_languages;
    SettingsValues m_values;
};

} // namespace orvesa
