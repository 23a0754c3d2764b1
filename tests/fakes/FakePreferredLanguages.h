#pragma once

// Preferred languages of the test's own.

#include "Platform/PreferredLanguagesPort.h"

namespace orvesa {

class FakePreferredLanguages final : public PreferredLanguagesPort {
public:
    explicit FakePreferredLanguages(QStringList languages = {});

    [[nodiscard]] QStringList preferredLanguages() const override { return m_languages; }

private:
    QStringList m_languages;
};

} // namespace orvesa
