#pragma once

// Which script a character belongs to, as far as reading needs to know. Pure functions; any thread.

#include <QString>

namespace orvesa::Scripts {

[[nodiscard]] bool isKatakana(QChar character); ///< without the long vowel mark
[[nodiscard]] bool isHiragana(QChar character);
[[nodiscard]] bool isKana(QChar character); ///< with the long vowel mark
[[nodiscard]] bool isIdeograph(QStringView character);
/// Ideographs, kana, and the punctuation and forms that are as wide as they are.
[[nodiscard]] bool isWide(QStringView character);
/// Wide punctuation: its own blank half is part of it.
[[nodiscard]] bool isWidePunctuation(QStringView character);
/// Letters, digits and signs of ASCII.
[[nodiscard]] bool isNarrow(QStringView character);

} // namespace orvesa::Scripts
