#pragma once

// All preferences as one record, the keys under which they are stored, and their stored forms.
//
// Reading is total: what is missing or not understood takes its default, silently, and stays stored as it is. Value
// type and pure functions; main thread, because the preferences database is.

#include "AI/AIProviderType.h"
#include "Core/AppLanguage.h"
#include "Models/AppTheme.h"
#include "Models/CustomPrompt.h"
#include "Models/HotKeyAction.h"
#include "Models/PolishMode.h"
#include "Models/TargetLanguage.h"
#include "Platform/PreferredLanguagesPort.h"
#include "Platform/UserDefaultsPort.h"

#include <map>
#include <optional>
#include <vector>

namespace orvesa {

namespace SettingsKey {
/// What every key begins with.
inline constexpr QLatin1StringView prefix("settings.");
inline constexpr QLatin1StringView defaultProvider("settings.defaultProvider");
inline constexpr QLatin1StringView targetLanguage("settings.targetLanguage");
inline constexpr QLatin1StringView polishMode("settings.polishMode");
inline constexpr QLatin1StringView thinkingEnabled("settings.thinkingEnabled");
inline constexpr QLatin1StringView hotKeys("settings.hotKeys");
inline constexpr QLatin1StringView appLanguage("settings.appLanguage");
inline constexpr QLatin1StringView theme("settings.theme");
inline constexpr QLatin1StringView customPrompts("settings.customPrompts");

[[nodiscard]] QString model(AIProviderType provider);
} // namespace SettingsKey

/// User-changed shortcuts only; an action that is not in it has its default.
using HotKeyOverrides = std::map<HotKeyAction, KeyCombo>;

struct SettingsValues {
    AIProviderType defaultProvider = AIProviderType::gemini;
    TargetLanguage targetLanguage = TargetLanguage::traditionalChinese;
    PolishMode polishMode = PolishMode::businessJapanese;
    bool thinkingEnabled = false;
    HotKeyOverrides hotKeyOverrides;
    AppLanguage appLanguage = AppLanguage::english;
    AppTheme theme = AppTheme::violet;
    std::vector<CustomPrompt> customPrompts; ///< in the user's order
};

[[nodiscard]] SettingsValues readSettings(const UserDefaultsPort &defaults, const PreferredLanguagesPort &languages);

/// The stored text under the key; absent when it is missing or no text.
[[nodiscard]] std::optional<QString> storedText(const UserDefaultsPort &defaults, const QString &key);

/// The stored value as a Boolean: numbers other than zero and texts such as "yes" count as true; false when it is
/// missing or data.
[[nodiscard]] bool storedBoolean(const UserDefaultsPort &defaults, const QString &key);

/// What an object of overrides does with names that are no actions.
enum class UnknownActions { skipped, refused };

/// The overrides that the JSON text stands for; nothing when it is not understood.
[[nodiscard]] std::optional<HotKeyOverrides> decodedHotKeys(const QByteArray &data, UnknownActions unknown);
/// The prompts that the JSON text stands for, in its order; nothing when it is not understood.
[[nodiscard]] std::optional<std::vector<CustomPrompt>> decodedPrompts(const QByteArray &data);

/// A JSON object with one member per override, named by the action.
[[nodiscard]] QByteArray encodedHotKeys(const HotKeyOverrides &overrides);
/// A JSON array in the list's order.
[[nodiscard]] QByteArray encodedPrompts(const std::vector<CustomPrompt> &prompts);

} // namespace orvesa
