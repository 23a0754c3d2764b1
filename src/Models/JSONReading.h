#pragma once

// What every record's decoder asks of a JSON object: a member that must be there with its type. All throw
// DecodingError. Pure functions, any thread.

#include <nlohmann/json.hpp>

#include <QString>

#include <string_view>

namespace orvesa::JSONReading {

using JSON = nlohmann::ordered_json;

/// The text as UTF-8, for a member of a JSON value.
[[nodiscard]] std::string encoded(const QString &text);

/// The UTF-8 text of a JSON value, every character of it.
[[nodiscard]] QString decoded(const std::string &text);

void requireObject(const JSON &json);

/// The member, or nullptr when it is missing or null.
[[nodiscard]] const JSON *optionalMember(const JSON &json, std::string_view key);

[[nodiscard]] const JSON &requiredMember(const JSON &json, std::string_view key);
[[nodiscard]] QString requiredString(const JSON &json, std::string_view key);
/// A number without a fraction from 0 to 4294967295.
[[nodiscard]] quint32 requiredUInt32(const JSON &json, std::string_view key);

} // namespace orvesa::JSONReading
