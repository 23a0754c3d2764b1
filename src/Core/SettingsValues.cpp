#include "Core/SettingsValues.h"

#include "Models/DecodingError.h"
#include "Models/JSONReading.h"
#include "Models/Text.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <utility>

namespace orvesa {

namespace {

using JSON = nlohmann::ordered_json;

/// The stored case, or nothing when the value is missing, no text, or no case's exact raw value.
template <HasRawValues Enumeration>
std::optional<Enumeration> storedCase(const UserDefaultsPort &defaults, QLatin1StringView key)
{
    const std::optional<QString> text = storedText(defaults, key);
    return text ? fromRawValue<Enumeration>(*text) : std::nullopt;
}

/// The rule by which a preferences database reads a text as a Boolean: after blanks and an optional sign with zeros,
/// "Y", "T" or another digit than zero means true, in either case of letter.
bool booleanFromText(QStringView text)
{
    text = trimmedWhitespaceAndNewlines(text);
    if (text.startsWith(u'-') || text.startsWith(u'+')) {
        text = text.sliced(1);
    }
    while (text.startsWith(u'0')) {
        text = text.sliced(1);
    }
    if (text.isEmpty()) {
        return false;
    }
    const QChar first = text.front().toUpper();
    return first == u'Y' || first == u'T' || (first >= u'1' && first <= u'9');
}

struct BooleanCoercion {
    bool operator()(bool value) const { return value; }
    bool operator()(qint64 value) const { return value != 0; }
    bool operator()(double value) const { return value != 0; }
    bool operator()(const QString &value) const { return booleanFromText(value); }
    bool operator()(const QByteArray &) const { return false; }
};

/// More than any preference has. Members are looked for one by one, so an object with a hundred thousand of them, in a
/// damaged file, would hold up the start for half a minute.
constexpr int mostMembers = 1000;

/// The JSON value of the data, a discarded one when it is none. Throws DecodingError.
JSON parsed(const QByteArray &data)
{
    std::vector<int> memberCounts; // of the objects that the place in the text is inside of
    const auto countMembers = [&memberCounts](int, JSON::parse_event_t event, const JSON &) {
        if (event == JSON::parse_event_t::object_start) {
            memberCounts.push_back(0);
        } else if (event == JSON::parse_event_t::object_end) {
            memberCounts.pop_back();
        } else if (event == JSON::parse_event_t::key && ++memberCounts.back() > mostMembers) {
            throw DecodingError("Too many members.");
        }
        return true;
    };
    return JSON::parse(data.begin(), data.end(), countMembers, false);
}

/// The stored data; empty when there is none, which no value decodes from.
QByteArray storedData(const UserDefaultsPort &defaults, QLatin1StringView key)
{
    const std::optional<DefaultsValue> value = defaults.value(key);
    const QByteArray *data = value ? std::get_if<QByteArray>(&*value) : nullptr;
    return data == nullptr ? QByteArray() : *data;
}

} // namespace

QString SettingsKey::model(AIProviderType provider)
{
    return QLatin1StringView("settings.model.") + rawValue(provider);
}

std::optional<QString> storedText(const UserDefaultsPort &defaults, const QString &key)
{
    const std::optional<DefaultsValue> value = defaults.value(key);
    const QString *text = value ? std::get_if<QString>(&*value) : nullptr;
    return text == nullptr ? std::nullopt : std::optional(*text);
}

bool storedBoolean(const UserDefaultsPort &defaults, const QString &key)
{
    const std::optional<DefaultsValue> value = defaults.value(key);
    return value && std::visit(BooleanCoercion{}, *value);
}

SettingsValues readSettings(const UserDefaultsPort &defaults, const PreferredLanguagesPort &languages)
{
    SettingsValues values;
    values.defaultProvider =
        storedCase<AIProviderType>(defaults, SettingsKey::defaultProvider).value_or(values.defaultProvider);
    values.targetLanguage =
        storedCase<TargetLanguage>(defaults, SettingsKey::targetLanguage).value_or(values.targetLanguage);
    values.polishMode = storedCase<PolishMode>(defaults, SettingsKey::polishMode).value_or(values.polishMode);
    values.thinkingEnabled = storedBoolean(defaults, SettingsKey::thinkingEnabled);
    values.hotKeyOverrides =
        decodedHotKeys(storedData(defaults, SettingsKey::hotKeys), UnknownActions::skipped).value_or(HotKeyOverrides());
    const auto language = storedCase<AppLanguage>(defaults, SettingsKey::appLanguage);
    values.appLanguage = language ? *language : systemDefaultLanguage(languages.preferredLanguages());
    values.theme = storedCase<AppTheme>(defaults, SettingsKey::theme).value_or(values.theme);
    values.customPrompts =
        decodedPrompts(storedData(defaults, SettingsKey::customPrompts)).value_or(std::vector<CustomPrompt>());
    return values;
}

std::optional<HotKeyOverrides> decodedHotKeys(const QByteArray &data, UnknownActions unknown)
{
    HotKeyOverrides overrides;
    try {
        const JSON json = parsed(data);
        JSONReading::requireObject(json);
        for (const auto &[name, member] : json.items()) {
            // Decoded before the name is looked at: one bad combination, under whatever name, spoils the whole object.
            KeyCombo combo = keyComboFromJSON(member);
            if (const auto action = fromRawValue<HotKeyAction>(JSONReading::decoded(name))) {
                overrides.insert_or_assign(*action, std::move(combo));
            } else if (unknown == UnknownActions::refused) {
                return std::nullopt;
            }
        }
    } catch (const DecodingError &) {
        return std::nullopt;
    }
    return overrides;
}

std::optional<std::vector<CustomPrompt>> decodedPrompts(const QByteArray &data)
{
    std::vector<CustomPrompt> prompts;
    try {
        const JSON json = parsed(data);
        if (!json.is_array()) {
            return std::nullopt;
        }
        std::ranges::transform(json, std::back_inserter(prompts), customPromptFromJSON);
    } catch (const DecodingError &) {
        return std::nullopt;
    }
    return prompts;
}

QByteArray encodedHotKeys(const HotKeyOverrides &overrides)
{
    JSON json = JSON::object();
    for (const auto &[action, combo] : overrides) {
        json[JSONReading::encoded(rawValue(action))] = keyComboToJSON(combo);
    }
    return QByteArray::fromStdString(json.dump());
}

QByteArray encodedPrompts(const std::vector<CustomPrompt> &prompts)
{
    JSON json = JSON::array();
    for (const CustomPrompt &prompt : prompts) {
        json.push_back(customPromptToJSON(prompt));
    }
    return QByteArray::fromStdString(json.dump());
}

} // namespace orvesa
