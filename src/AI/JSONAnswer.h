#pragma once

// JSON on its way to and from a service. Pure functions, any thread.
//
// What a service sends is not trusted: the nesting is bounded, the text must be valid UTF-8, and looking a member up
// never depends on what the answer holds. Everything that does not have the expected shape is invalidAPIResponse.

#include <nlohmann/json.hpp>

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <optional>

namespace orvesa {

/// Deeper nesting than this is refused.
inline constexpr int greatestJSONDepth = 512;

/// The body as it goes out. Throws AppError::apiRequestFailed("Failed to encode request body.").
[[nodiscard]] QByteArray encodedRequest(const nlohmann::ordered_json &body);
/// The text as a JSON string value. Halves of surrogate pairs, which no encoding can carry, become U+FFFD.
[[nodiscard]] std::string jsonText(const QString &text);

/// Sorted members, unlike ordered_json: an object with a million of them must not cost a million searches.
using JSONAnswer = nlohmann::json;

/// The decoded answer, always an object. Throws AppError invalidAPIResponse.
[[nodiscard]] JSONAnswer decodedAnswer(const QByteArray &body);
/// The member of that name; throws AppError invalidAPIResponse when it is missing or `object` is no object.
[[nodiscard]] const JSONAnswer &requiredMember(const JSONAnswer &object, const char *name);
/// The member of that name, or nullptr when it is missing or null. Throws when `object` is no object.
[[nodiscard]] const JSONAnswer *optionalMember(const JSONAnswer &object, const char *name);
/// `value` itself when it is an array; throws otherwise.
[[nodiscard]] const JSONAnswer &requiredArray(const JSONAnswer &value);
/// The text of a string value; throws otherwise.
[[nodiscard]] QString requiredString(const JSONAnswer &value);
/// The text of a member that may be missing or null but must be a string otherwise.
[[nodiscard]] std::optional<QString> optionalString(const JSONAnswer &object, const char *name);

/// The text as an address. Throws AppError invalidAPIResponse when it does not form one: only the characters that an
/// address may hold, each percent sign with its two digits, nothing is escaped or repaired.
[[nodiscard]] QUrl serviceURL(const QString &text);

} // namespace orvesa
