#pragma once

// What rules ask of a text: what is left without its outer blanks, how long it is for a reader, and how it can be
// printed where characters may command. Pure functions, any thread.

#include <QString>
#include <QStringView>

namespace orvesa {

/// Without the characters of Unicode category Z, U+0009 to U+000D and U+0085 at both ends.
[[nodiscard]] QStringView trimmedWhitespaceAndNewlines(QStringView text);

/// Whether nothing is left after trimming.
[[nodiscard]] bool isBlank(QStringView text);

/// Length in user-perceived characters: extended grapheme clusters (Unicode UAX #29).
[[nodiscard]] qsizetype characterCount(QStringView text);

/// For terminals and logs, which obey control characters: each is replaced by U+FFFD, but those in `harmless`.
[[nodiscard]] QString printable(QStringView text, QStringView harmless = {});

} // namespace orvesa
