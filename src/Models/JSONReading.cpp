#include "Models/JSONReading.h"

#include "Models/DecodingError.h"

#include <cmath>
#include <limits>

namespace orvesa::JSONReading {

namespace {

[[noreturn]] void fail(std::string_view key, const char *reason)
{
    throw DecodingError("Member \"" + std::string(key) + "\" " + reason + ".");
}

} // namespace

std::string encoded(const QString &text)
{
    return text.toStdString();
}

QString decoded(const std::string &text)
{
    QString result = QString::fromStdString(text);
    // Dropped at the beginning, where it is a character like any other here. A decoder that keeps it takes several
    // times as long.
    if (text.starts_with("\xEF\xBB\xBF")) {
        result.prepend(QChar::ByteOrderMark);
    }
    return result;
}

void requireObject(const JSON &json)
{
    if (!json.is_object()) {
        throw DecodingError("Expected an object.");
    }
}

const JSON *optionalMember(const JSON &json, std::string_view key)
{
    requireObject(json);
    const auto found = json.find(std::string(key));
    return found == json.end() || found->is_null() ? nullptr : &*found;
}

const JSON &requiredMember(const JSON &json, std::string_view key)
{
    const JSON *member = optionalMember(json, key);
    if (member == nullptr) {
        fail(key, "is missing");
    }
    return *member;
}

QString requiredString(const JSON &json, std::string_view key)
{
    const JSON &member = requiredMember(json, key);
    if (!member.is_string()) {
        fail(key, "is no text");
    }
    return decoded(member.get_ref<const std::string &>());
}

quint32 requiredUInt32(const JSON &json, std::string_view key)
{
    constexpr auto greatest = std::numeric_limits<quint32>::max();
    const JSON &member = requiredMember(json, key);
    // The order matters: an unsigned number answers true to is_number_integer() as well.
    if (member.is_number_unsigned()) {
        if (const auto number = member.get<quint64>(); number <= greatest) {
            return static_cast<quint32>(number);
        }
    } else if (member.is_number_integer()) {
        // Signed, which may still be non-negative in a value that was built and not parsed.
        if (const auto number = member.get<qint64>(); number >= 0 && number <= qint64{greatest}) {
            return static_cast<quint32>(number);
        }
    } else if (member.is_number_float()) {
        // "2.0" is the number 2, however a writer spells it.
        const auto number = member.get<double>();
        if (number >= 0 && number <= double{greatest} && std::trunc(number) == number) {
            return static_cast<quint32>(number);
        }
    }
    fail(key, "is no unsigned 32-bit number");
}

} // namespace orvesa::JSONReading
