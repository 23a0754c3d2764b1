#include "App/SettingsCommand.h"

#include "App/StandardStreams.h"
#include "Core/SettingsValues.h"
#include "Models/KeyPress.h"
#include "Models/Text.h"

#include <algorithm>
#include <functional>

using namespace Qt::StringLiterals;

namespace orvesa {

using CommandLine::ExitCode;

namespace {

struct Preference {
    QString key;
    QString allowed; ///< in words, for the message of a refusal
    std::function<QString(const SettingsValues &, const UserDefaultsPort &)> effective;
    /// The form in which the text is stored; nothing when it is not allowed.
    std::function<std::optional<DefaultsValue>(const QString &)> stored;
};

template <typename Enumeration>
Preference enumerated(QLatin1StringView key, Enumeration SettingsValues::*field)
{
    QStringList allowed;
    for (const Enumeration value : allCases<Enumeration>()) {
        allowed.append(rawValue(value));
    }
    return {key, u"one of: "_s + allowed.join(u", "_s),
            [field](const SettingsValues &values, const UserDefaultsPort &) { return rawValue(values.*field); },
            [](const QString &text) {
                return fromRawValue<Enumeration>(text) ? std::optional<DefaultsValue>(text) : std::nullopt;
            }};
}

/// Whether the combination could have been recorded: known modifiers, and those that the key needs.
bool isAllowed(const KeyCombo &combo)
{
    constexpr std::pair<quint32, KeyModifier> modifiers[] = {{CarbonModifier::command, KeyModifier::command},
                                                             {CarbonModifier::shift, KeyModifier::shift},
                                                             {CarbonModifier::option, KeyModifier::option},
                                                             {CarbonModifier::control, KeyModifier::control}};
    KeyPress press{combo.keyCode, {}, combo.keyLabel};
    for (const auto &[carbon, flag] : modifiers) {
        press.modifiers.setFlag(flag, (combo.carbonModifiers & carbon) != 0);
    }
    const auto recorded = KeyCombo::fromKeyPress(press);
    return recorded && recorded->conflictsWith(combo);
}

std::optional<DefaultsValue> storedHotKeys(const QString &text)
{
    const auto overrides = decodedHotKeys(text.toUtf8(), UnknownActions::refused);
    if (!overrides || !std::ranges::all_of(*overrides, [](const auto &entry) { return isAllowed(entry.second); })) {
        return std::nullopt;
    }
    return encodedHotKeys(*overrides);
}

std::optional<DefaultsValue> storedPrompts(const QString &text)
{
    const auto prompts = decodedPrompts(text.toUtf8());
    if (!prompts || !std::ranges::all_of(*prompts, [](const CustomPrompt &prompt) {
            return !prompt.hotKey || isAllowed(*prompt.hotKey);
        })) {
        return std::nullopt;
    }
    return encodedPrompts(*prompts);
}

std::optional<DefaultsValue> storedModel(const QString &text)
{
    const QString model = trimmedWhitespaceAndNewlines(text).toString();
    const bool hasControls =
        std::ranges::any_of(model, [](QChar character) { return character.category() == QChar::Other_Control; });
    return model.isEmpty() || hasControls ? std::nullopt : std::optional<DefaultsValue>(model);
}

Preference modelOf(AIProviderType provider)
{
    return {SettingsKey::model(provider), u"the name of a model"_s,
            [provider](const SettingsValues &, const UserDefaultsPort &defaults) {
                return storedText(defaults, SettingsKey::model(provider)).value_or(defaultModel(provider));
            },
            storedModel};
}

std::vector<Preference> preferences()
{
    std::vector<Preference> all{
        enumerated(SettingsKey::defaultProvider, &SettingsValues::defaultProvider),
        enumerated(SettingsKey::targetLanguage, &SettingsValues::targetLanguage),
        enumerated(SettingsKey::polishMode, &SettingsValues::polishMode),
        {SettingsKey::thinkingEnabled, u"true or false"_s,
         [](const SettingsValues &values, const UserDefaultsPort &) {
             return values.thinkingEnabled ? u"true"_s : u"false"_s;
         },
         [](const QString &text) {
             const bool isBoolean = text == "true"_L1 || text == "false"_L1;
             return isBoolean ? std::optional<DefaultsValue>(text == "true"_L1) : std::nullopt;
         }},
        {SettingsKey::hotKeys, u"a JSON object of shortcuts by action, as \"settings get\" shows it"_s,
         [](const SettingsValues &values, const UserDefaultsPort &) {
             return QString::fromUtf8(encodedHotKeys(values.hotKeyOverrides));
         },
         storedHotKeys},
        enumerated(SettingsKey::appLanguage, &SettingsValues::appLanguage),
        enumerated(SettingsKey::theme, &SettingsValues::theme),
        {SettingsKey::customPrompts, u"a JSON array of prompts, as \"settings get\" shows it"_s,
         [](const SettingsValues &values, const UserDefaultsPort &) {
             return QString::fromUtf8(encodedPrompts(values.customPrompts));
         },
         storedPrompts},
    };
    for (const AIProviderType provider : allCases<AIProviderType>()) {
        all.push_back(modelOf(provider));
    }
    return all;
}

ExitCode printed(const QString &text)
{
    return StandardStreams::writeOutput(text) ? ExitCode::success : ExitCode::failure;
}

} // namespace

SettingsCommand::SettingsCommand(UserDefaultsPort &defaults, const PreferredLanguagesPort &languages)
    : m_defaults(defaults), m_languages(languages)
{
}

ExitCode SettingsCommand::run(const CommandLine::Settings &request) const
{
    using Action = CommandLine::Settings::Action;
    if (request.action == Action::list) {
        return list();
    }
    const std::vector<Preference> all = preferences();
    const auto preference = std::ranges::find(all, request.key, &Preference::key);
    if (preference == all.end()) {
        StandardStreams::writeError(u"There is no preference “%1”; “settings list” shows all."_s.arg(request.key));
        return ExitCode::usage;
    }
    if (request.action == Action::get) {
        return printed(preference->effective(readSettings(m_defaults, m_languages), m_defaults));
    }
    if (request.action == Action::reset) {
        m_defaults.remove(request.key);
        return written();
    }
    const auto value = preference->stored(request.value);
    if (!value) {
        StandardStreams::writeError(u"%1 takes %2"_s.arg(request.key, preference->allowed));
        return ExitCode::usage;
    }
    m_defaults.set(request.key, *value);
    return written();
}

ExitCode SettingsCommand::list() const
{
    const SettingsValues values = readSettings(m_defaults, m_languages);
    QStringList lines;
    for (const Preference &preference : preferences()) {
        // One line each, whatever a file that was edited by hand holds.
        QString value = preference.effective(values, m_defaults);
        lines.append(preference.key + u'=' + value.replace(u'\n', u"\\n"_s).replace(u'\r', u"\\r"_s));
    }
    return printed(lines.join(u'\n'));
}

ExitCode SettingsCommand::written() const
{
    if (!m_defaults.hasUnwrittenChanges()) {
        return ExitCode::success;
    }
    StandardStreams::writeError(u"The preferences could not be written."_s);
    return ExitCode::failure;
}

} // namespace orvesa
