#pragma once

// The user's languages from LANGUAGE, LC_ALL, LC_MESSAGES and LANG. Any thread.

#include "Platform/PreferredLanguagesPort.h"

namespace orvesa {

class LocalePreferredLanguages final : public PreferredLanguagesPort {
public:
    [[nodiscard]] QStringList preferredLanguages() const override;
};

} // namespace orvesa
