#include "Models/AITask.h"

#include "Core/Localization.h"
#include "Models/DecodingError.h"
#include "Models/JSONReading.h"
#include "Models/TargetLanguage.h"

#include <nlohmann/json.hpp>

#include <utility>

namespace orvesa {

namespace {

namespace Key {
constexpr auto translate = "translate";
constexpr auto targetLanguage = "targetLanguage";
constexpr auto polish = "polish";
constexpr auto mode = "mode";
constexpr auto custom = "custom";
constexpr auto name = "name";
constexpr auto promptTemplate = "template";
} // namespace Key

constexpr auto invalidNumberOfKeys = "Invalid number of keys found, expected one.";

struct DisplayName {
    QString operator()(const TranslateTask &task) const
    {
        const auto language = fromRawValue<TargetLanguage>(task.targetLanguage);
        return Localization::format(L10nKey::taskTranslateTitle,
                                    language ? displayText(*language) : task.targetLanguage);
    }
    QString operator()(const PolishTask &task) const
    {
        return Localization::format(L10nKey::taskPolishTitle, displayText(task.mode));
    }
    QString operator()(const CustomTask &task) const { return task.name; }
};

struct Encoder {
    using JSON = nlohmann::ordered_json;

    JSON operator()(const TranslateTask &task) const
    {
        return {{Key::translate, JSON::object({{Key::targetLanguage, JSONReading::encoded(task.targetLanguage)}})}};
    }
    JSON operator()(const PolishTask &task) const
    {
        return {{Key::polish, JSON::object({{Key::mode, JSONReading::encoded(rawValue(task.mode))}})}};
    }
    JSON operator()(const CustomTask &task) const
    {
        return {{Key::custom, JSON::object({{Key::name, JSONReading::encoded(task.name)},
                                            {Key::promptTemplate, JSONReading::encoded(task.promptTemplate)}})}};
    }
};

} // namespace

QString displayName(const AITask &task)
{
    return std::visit(DisplayName{}, task);
}

nlohmann::ordered_json aiTaskToJSON(const AITask &task)
{
    return std::visit(Encoder{}, task);
}

AITask aiTaskFromJSON(const nlohmann::ordered_json &json)
{
    JSONReading::requireObject(json);
    if (json.size() != 1) {
        throw DecodingError(invalidNumberOfKeys);
    }
    const std::string &name = json.begin().key();
    const nlohmann::ordered_json &payload = json.begin().value();
    if (name == Key::translate) {
        return TranslateTask{JSONReading::requiredString(payload, Key::targetLanguage)};
    }
    if (name == Key::polish) {
        const auto mode = fromRawValue<PolishMode>(JSONReading::requiredString(payload, Key::mode));
        if (!mode) {
            throw DecodingError("Unknown polish mode.");
        }
        return PolishTask{*mode};
    }
    if (name == Key::custom) {
        return CustomTask{JSONReading::requiredString(payload, Key::name),
                          JSONReading::requiredString(payload, Key::promptTemplate)};
    }
    // A member of any other name is no case's, so of the keys that count there are none.
    throw DecodingError(invalidNumberOfKeys);
}

} // namespace orvesa
