#pragma once

// The built-in actions that have a global shortcut. Value type, any thread.

#include "Core/L10nKey.h"
#include "Core/RawValue.h"
#include "Models/KeyCombo.h"
#include "Models/SRGBColor.h"

namespace orvesa {

enum class HotKeyAction { translateSelection, polishSelection, ocrTranslate };

template <>
struct RawValueTable<HotKeyAction> {
    static constexpr std::array<RawValueRow<HotKeyAction>, 3> rows{{
        {HotKeyAction::translateSelection, "translateSelection"},
        {HotKeyAction::polishSelection, "polishSelection"},
        {HotKeyAction::ocrTranslate, "ocrTranslate"},
    }};
};

[[nodiscard]] KeyCombo defaultCombo(HotKeyAction action);
/// Declaration index plus one.
[[nodiscard]] quint32 hotKeyIdentifier(HotKeyAction action);
/// That of a prompt with a shortcut, by its place in the list of prompts.
[[nodiscard]] quint32 promptHotKeyIdentifier(std::size_t index);
/// Drawn behind the action's icon, first colour to second.
[[nodiscard]] SRGBGradient iconGradient(HotKeyAction action);
/// The key of the action's menu title.
[[nodiscard]] L10nKey menuTitleKey(HotKeyAction action);

} // namespace orvesa
