#pragma once

// The user's preferred languages, most preferred first. Any thread.

#include <QStringList>

namespace orvesa {

class PreferredLanguagesPort {
public:
    virtual ~PreferredLanguagesPort() = default;

    /// BCP 47 tags such as "zh-Hant-TW" or "ja-JP". May be empty.
    [[nodiscard]] virtual QStringList preferredLanguages() const = 0;
};

} // namespace orvesa
