#pragma once

// Every text of the user interface, in three languages, and the lookup in the current one.
//
// The tables are built into the program; nothing is read from disk. `current` is process-wide state that only the
// settings store changes. Main thread only.

#include "Core/AppLanguage.h"
#include "Core/L10nKey.h"

#include <QString>

namespace orvesa::Localization {

/// The language of every lookup; English until the settings are loaded.
[[nodiscard]] AppLanguage current();
void setCurrent(AppLanguage language);

/// The text of the key in the current language, else in English, else the key's own name.
[[nodiscard]] QString string(L10nKey key);

/// The text of the key with its one "%@" replaced by `argument`. The argument is data: a "%@" or "%1" inside it stays
/// as it is.
[[nodiscard]] QString format(L10nKey key, const QString &argument);

/// The text of the key in the given language, empty when that table lacks it. For tests and for lists that show each
/// language in its own words.
[[nodiscard]] QString string(L10nKey key, AppLanguage language);

} // namespace orvesa::Localization
