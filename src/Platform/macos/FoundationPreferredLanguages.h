#pragma once

// The languages of the system settings, in the user's order. Any thread.

#include "Platform/PreferredLanguagesPort.h"

namespace orvesa {

class FoundationPreferredLanguages final : public PreferredLanguagesPort {
public:
    [[nodiscard]] QStringList preferredLanguages() const override;
};

} // namespace orvesa
