#pragma once

// The sections of the settings window, in the order of its sidebar. Value type, any thread.

#include "Core/L10nKey.h"
#include "Models/SRGBColor.h"

#include <QString>

#include <array>

namespace orvesa {

enum class SettingsSection { general, shortcuts, prompts, providers };

inline constexpr std::array allSettingsSections{SettingsSection::general, SettingsSection::shortcuts,
                                                SettingsSection::prompts, SettingsSection::providers};

[[nodiscard]] L10nKey titleKey(SettingsSection section);
[[nodiscard]] L10nKey subtitleKey(SettingsSection section);
/// System symbol name of the section's icon.
[[nodiscard]] QString symbolName(SettingsSection section);
[[nodiscard]] SRGBGradient iconGradient(SettingsSection section);

} // namespace orvesa
