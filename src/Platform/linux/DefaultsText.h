#pragma once

// The text forms of keys and values in a preferences file; DefaultsDocument describes them. Pure functions, any thread.

#include "Platform/UserDefaultsPort.h"

#include <QStringView>

#include <optional>

namespace orvesa::DefaultsText {

/// Takes a bare or quoted key off the front of the text; nothing when there is none.
[[nodiscard]] std::optional<QString> takeKey(QStringView &text);
/// The value that the whole text stands for; nothing when it stands for none.
[[nodiscard]] std::optional<DefaultsValue> parseValue(QStringView text);

[[nodiscard]] QByteArray keyText(const QString &key);
[[nodiscard]] QByteArray valueText(const DefaultsValue &value);

} // namespace orvesa::DefaultsText
