#pragma once

// Preferred languages that a test sets.

#include "Platform/PreferredLanguagesPort.h"

namespace orvesa {

class FakePreferredLanguages final : public PreferredLanguagesPort {
public:
    explicit FakePreferredLanguages(QStringList languages = {});

    [[nodiscard]] QStringList preferredLanguages() const override { return m_languages; }
    void setLanguages(QStringList languages);

private:
    QStringList m_languages;
};

} // namespace orvesa
