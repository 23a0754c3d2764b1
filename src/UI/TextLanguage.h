#pragma once

// Which of the languages that share the Han characters a text is written in, so that its characters can be drawn in the
// shapes that its readers know. Pure functions, any thread.

#include "Core/AppLanguage.h"

#include <QStringView>

namespace orvesa {

enum class TextLanguage { other, traditionalChinese, simplifiedChinese, japanese, korean };

/// Judges by the beginning of the text. `undecided` is for a text that has Han characters and nothing that tells whose;
/// a text without any is of another language.
[[nodiscard]] TextLanguage textLanguage(QStringView text, TextLanguage undecided);
[[nodiscard]] TextLanguage textLanguage(AppLanguage language);
/// The language of the desktop itself.
[[nodiscard]] TextLanguage desktopLanguage();

} // namespace orvesa
