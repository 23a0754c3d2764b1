#pragma once

// The three text tables, constant data. Any thread.

#include "Core/L10nKey.h"

#include <array>
#include <string_view>

namespace orvesa::Localization {

inline constexpr std::size_t textCount = RawValueTable<L10nKey>::rows.size();

struct TextRow {
    L10nKey key;
    std::u16string_view text;
};

extern const std::array<TextRow, textCount> englishRows;
extern const std::array<TextRow, textCount> traditionalChineseRows;
extern const std::array<TextRow, textCount> japaneseRows;

} // namespace orvesa::Localization
