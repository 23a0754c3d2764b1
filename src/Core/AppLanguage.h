#pragma once

// The languages of the user interface and the rule that picks one from the user's preferred languages.
// Constant data and pure functions, any thread.

#include "Core/RawValue.h"

#include <QStringList>

namespace orvesa {

enum class AppLanguage { traditionalChinese, japanese, english };

template <>
struct RawValueTable<AppLanguage> {
    static constexpr std::array<RawValueRow<AppLanguage>, 3> rows{{
        {AppLanguage::traditionalChinese, "zh-Hant"},
        {AppLanguage::japanese, "ja"},
        {AppLanguage::english, "en"},
    }};
};

/// The interface language for somebody who never chose one. `preferredLanguages` are BCP 47 tags ("zh-Hant-TW") in the
/// user's order; the first that names one of ours wins, and English stands in when none does.
[[nodiscard]] AppLanguage systemDefaultLanguage(const QStringList &preferredLanguages);

} // namespace orvesa
