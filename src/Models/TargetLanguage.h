#pragma once

// The languages that translations go into. Value type, any thread; displayText() main thread only.

#include "Core/L10nKey.h"
#include "Core/RawValue.h"

namespace orvesa {

enum class TargetLanguage { traditionalChinese, japanese, english };

/// The raw value is also the language's name inside the translate prompt.
template <>
struct RawValueTable<TargetLanguage> {
    static constexpr std::array<RawValueRow<TargetLanguage>, 3> rows{{
        {TargetLanguage::traditionalChinese, "Traditional Chinese"},
        {TargetLanguage::japanese, "Japanese"},
        {TargetLanguage::english, "English"},
    }};
};

[[nodiscard]] L10nKey displayTextKey(TargetLanguage language);
/// The language's name in the current interface language.
[[nodiscard]] QString displayText(TargetLanguage language);

} // namespace orvesa
