#pragma once

// The three text tables, constant data, and the search in them. Any thread.
//
// A table holds one row per key in the order of the keys, which makes a search one index operation. Each table's source
// checks that at compile time: a missing or a doubled key does not build.

#include "Core/L10nKey.h"

#include <QString>

#include <algorithm>
#include <array>
#include <span>
#include <string_view>

namespace orvesa::Localization {

inline constexpr std::size_t textCount = RawValueTable<L10nKey>::rows.size();

struct TextRow {
    L10nKey key;
    std::u16string_view text;
};

/// Whether the row of every key stands at that key's own position.
[[nodiscard]] constexpr bool holdsEveryKeyInOrder(std::span<const TextRow> rows)
{
    const auto keys = allCases<L10nKey>();
    return std::ranges::equal(rows, keys, {}, &TextRow::key);
}

/// The text of the key in `rows`, else in `english`, else the key's own name.
[[nodiscard]] QString lookUp(L10nKey key, std::span<const TextRow> rows, std::span<const TextRow> english);

extern const std::array<TextRow, textCount> englishRows;
extern const std::array<TextRow, textCount> traditionalChineseRows;
extern const std::array<TextRow, textCount> japaneseRows;

} // namespace orvesa::Localization
