#include "Models/CustomPrompt.h"

#include "Core/Localization.h"
#include "Models/DecodingError.h"
#include "Models/JSONReading.h"
#include "Models/Text.h"

#include <nlohmann/json.hpp>

namespace orvesa {

namespace {

namespace Key {
constexpr auto id = "id";
constexpr auto name = "name";
constexpr auto promptTemplate = "template";
constexpr auto hotKey = "hotKey";
} // namespace Key

bool isHexDigit(QChar character)
{
    return (character >= u'0' && character <= u'9') || (character >= u'a' && character <= u'f') ||
           (character >= u'A' && character <= u'F');
}

/// Eight, four, four, four and twelve hexadecimal digits joined by hyphens; QUuid alone would take braces as well.
bool isStandardUUIDText(QStringView text)
{
    constexpr qsizetype length = 36;
    if (text.size() != length) {
        return false;
    }
    for (qsizetype index = 0; index < length; ++index) {
        const bool hyphenExpected = index == 8 || index == 13 || index == 18 || index == 23;
        if (hyphenExpected ? text.at(index) != u'-' : !isHexDigit(text.at(index))) {
            return false;
        }
    }
    return true;
}

QUuid requiredUUID(const nlohmann::ordered_json &json, std::string_view key)
{
    const QString text = JSONReading::requiredString(json, key);
    if (!isStandardUUIDText(text)) {
        throw DecodingError("Not a UUID.");
    }
    return QUuid::fromString(text);
}

} // namespace

QString CustomPrompt::shownName() const
{
    const QStringView trimmed = trimmedWhitespaceAndNewlines(name);
    return trimmed.isEmpty() ? Localization::string(L10nKey::promptUntitled) : trimmed.toString();
}

AITask CustomPrompt::task() const
{
    return CustomTask{shownName(), promptTemplate};
}

nlohmann::ordered_json customPromptToJSON(const CustomPrompt &prompt)
{
    nlohmann::ordered_json json = nlohmann::ordered_json::object();
    json[Key::id] = JSONReading::encoded(prompt.id.toString(QUuid::WithoutBraces).toUpper());
    json[Key::name] = JSONReading::encoded(prompt.name);
    json[Key::promptTemplate] = JSONReading::encoded(prompt.promptTemplate);
    if (prompt.hotKey) {
        json[Key::hotKey] = keyComboToJSON(*prompt.hotKey);
    }
    return json;
}

CustomPrompt customPromptFromJSON(const nlohmann::ordered_json &json)
{
    const nlohmann::ordered_json *hotKey = JSONReading::optionalMember(json, Key::hotKey);
    return {
        .id = requiredUUID(json, Key::id),
        .name = JSONReading::requiredString(json, Key::name),
        .promptTemplate = JSONReading::requiredString(json, Key::promptTemplate),
        .hotKey = hotKey == nullptr ? std::nullopt : std::optional(keyComboFromJSON(*hotKey)),
    };
}

} // namespace orvesa
