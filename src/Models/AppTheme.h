#pragma once

// The colour themes. Value type, any thread; displayText() main thread only.

#include "Core/L10nKey.h"
#include "Core/RawValue.h"
#include "Models/SRGBColor.h"

namespace orvesa {

enum class AppTheme { violet, ocean, forest, sunset, graphite };

template <>
struct RawValueTable<AppTheme> {
    static constexpr std::array<RawValueRow<AppTheme>, 5> rows{{
        {AppTheme::violet, "violet"},
        {AppTheme::ocean, "ocean"},
        {AppTheme::forest, "forest"},
        {AppTheme::sunset, "sunset"},
        {AppTheme::graphite, "graphite"},
    }};
};

/// The result panel's header.
[[nodiscard]] SRGBGradient brandGradient(AppTheme theme);
/// Behind the settings window's sidebar.
[[nodiscard]] SRGBGradient sidebarGradient(AppTheme theme);
/// Buttons and other accented elements: the end of the brand gradient.
[[nodiscard]] SRGBColor accent(AppTheme theme);
[[nodiscard]] L10nKey displayTextKey(AppTheme theme);
[[nodiscard]] QString displayText(AppTheme theme);

} // namespace orvesa
