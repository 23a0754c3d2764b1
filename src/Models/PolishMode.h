#pragma once

// The fixed styles into which a text can be rewritten. Value type, any thread; displayText() main thread only.

#include "Core/L10nKey.h"
#include "Core/RawValue.h"

namespace orvesa {

enum class PolishMode { businessJapanese, naturalJapanese, traditionalChinese, concise };

template <>
struct RawValueTable<PolishMode> {
    static constexpr std::array<RawValueRow<PolishMode>, 4> rows{{
        {PolishMode::businessJapanese, "businessJapanese"},
        {PolishMode::naturalJapanese, "naturalJapanese"},
        {PolishMode::traditionalChinese, "traditionalChinese"},
        {PolishMode::concise, "concise"},
    }};
};

[[nodiscard]] L10nKey displayTextKey(PolishMode mode);
/// The mode's name in the current interface language.
[[nodiscard]] QString displayText(PolishMode mode);

} // namespace orvesa
