#pragma once

// The font families for a text in a given language.
//
// Chinese, Japanese and Korean share characters that each of them draws in its own shape, and the toolkit fills them in
// without knowing the language of a text. So a text in one of these languages names a family made for it, where one is
// installed; the desktop's own choice stands for its own language and for everything else. Main thread only.

#include "UI/TextLanguage.h"

#include <QStringList>

namespace orvesa::FontFamilies {

/// For texts of the interface. `desktopFamily` is the family that the desktop draws its controls with.
[[nodiscard]] QStringList forInterface(const QString &desktopFamily, TextLanguage language);
/// For texts from outside, which have emoji in them: those of the desktop's emoji font, rather than whatever other font
/// happens to have a drawing in one colour.
[[nodiscard]] QStringList forContent(const QString &desktopFamily, TextLanguage language);

} // namespace orvesa::FontFamilies
