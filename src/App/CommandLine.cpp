#include "App/CommandLine.h"

#include "App/DesktopCommandLine.h"
#include "App/OutsideAction.h"
#include "App/StoreCommandLine.h"

#include <QCommandLineParser>

using namespace Qt::StringLiterals;

namespace orvesa::CommandLine {

namespace {

const QString toOption = u"to"_s;
const QString modeOption = u"mode"_s;
const QString providerOption = u"provider"_s;
const QString modelOption = u"model"_s;
const QString thinkingOption = u"thinking"_s;
const QString performOption = u"perform"_s;
const QString networkOption = u"network"_s;
const QString versionOption = u"version"_s;
const QString helpOption = u"help"_s;
const QString standardInputMarker = u"-"_s;

void addOptions(QCommandLineParser &parser)
{
    parser.addOptions({{toOption, {}, u"language"_s},
                       {modeOption, {}, u"mode"_s},
                       {providerOption, {}, u"provider"_s},
                       {modelOption, {}, u"model"_s},
                       {thinkingOption, {}, u"on|off"_s},
                       {performOption, {}, u"action"_s},
                       {networkOption, {}},
                       {versionOption, {}},
                       {{u"h"_s, helpOption}, {}}});
}

template <typename Enumeration>
QString rawValues()
{
    QStringList values;
    for (const Enumeration value : allCases<Enumeration>()) {
        values.append(rawValue(value));
    }
    return values.join(u", "_s);
}

UsageError notOneOf(const QString &option, const QString &allowed)
{
    return {u"--%1 takes one of: %2"_s.arg(option, allowed)};
}

std::variant<Overrides, UsageError> overrides(const QCommandLineParser &parser)
{
    Overrides result;
    if (parser.isSet(providerOption)) {
        result.provider = fromRawValue<AIProviderType>(parser.value(providerOption));
        if (!result.provider) {
            return notOneOf(providerOption, rawValues<AIProviderType>());
        }
    }
    if (parser.isSet(modelOption)) {
        result.model = parser.value(modelOption);
        if (result.model->isEmpty()) {
            return UsageError{u"--model takes the name of a model"_s};
        }
    }
    if (parser.isSet(thinkingOption)) {
        const QString value = parser.value(thinkingOption);
        if (value != "on"_L1 && value != "off"_L1) {
            return notOneOf(thinkingOption, u"on, off"_s);
        }
        result.thinking = value == "on"_L1;
    }
    return result;
}

/// An option that the command has no use for is a mistake, not to be passed over.
std::optional<UsageError> misplacedOption(const QCommandLineParser &parser, const QString &command,
                                          const QStringList &allowed)
{
    const QStringList given = parser.optionNames();
    for (const QString &name : given) {
        if (!allowed.contains(name)) {
            return UsageError{u"--%1 does not go with %2"_s.arg(name, command)};
        }
    }
    return std::nullopt;
}

Request parseTranslate(const QCommandLineParser &parser, const Overrides &overrides, const QList<TextArgument> &text)
{
    Translate request{std::nullopt, overrides, text};
    if (parser.isSet(toOption)) {
        request.language = parser.value(toOption);
        if (request.language->trimmed().isEmpty()) {
            return UsageError{u"--to takes the name of a language"_s};
        }
    }
    return request;
}

Request parsePolish(const QCommandLineParser &parser, const Overrides &overrides, const QList<TextArgument> &text)
{
    Polish request{std::nullopt, overrides, text};
    if (parser.isSet(modeOption)) {
        request.mode = fromRawValue<PolishMode>(parser.value(modeOption));
        if (!request.mode) {
            return notOneOf(modeOption, rawValues<PolishMode>());
        }
    }
    return request;
}

/// The last `literalCount` words are meant as they stand, whatever they look like.
QList<TextArgument> textArguments(const QStringList &words, qsizetype literalCount)
{
    QList<TextArgument> text;
    for (qsizetype index = 0; index < words.size(); ++index) {
        const bool isInput = words.at(index) == standardInputMarker && index < words.size() - literalCount;
        text.append(isInput ? std::nullopt : TextArgument(words.at(index)));
    }
    if (text.isEmpty()) {
        text.append(std::nullopt);
    }
    return text;
}

Request parseCommand(const QCommandLineParser &parser, qsizetype literalCount)
{
    QStringList words = parser.positionalArguments();
    const QString command = words.takeFirst();
    if (command == "settings"_L1 || command == "key"_L1) {
        if (const auto misplaced = misplacedOption(parser, command, {})) {
            return *misplaced;
        }
        return command == "key"_L1 ? StoreCommandLine::parseKey(words) : StoreCommandLine::parseSettings(words);
    }
    if (command == "autostart"_L1 || command == "doctor"_L1) {
        const bool isDoctor = command == "doctor"_L1;
        if (const auto misplaced =
                misplacedOption(parser, command, isDoctor ? QStringList{networkOption} : QStringList())) {
            return *misplaced;
        }
        using Reach = Doctor::Reach;
        return isDoctor ? DesktopCommandLine::parseDoctor(words,
                                                          parser.isSet(networkOption) ? Reach::network : Reach::machine)
                        : DesktopCommandLine::parseAutostart(words);
    }
    if (command == "recognize"_L1) {
        if (const auto misplaced = misplacedOption(parser, command, {})) {
            return *misplaced;
        }
        return words.size() == 1 ? Request(Recognize{words.first()})
                                 : Request(UsageError{u"recognize takes the name of one image file"_s});
    }
    QStringList allowed{providerOption, modelOption, thinkingOption};
    if (command == "translate"_L1) {
        allowed.append(toOption);
    } else if (command == "polish"_L1) {
        allowed.append(modeOption);
    } else if (command != "prompt"_L1) {
        return UsageError{u"unknown command: %1"_s.arg(command)};
    }
    if (const auto misplaced = misplacedOption(parser, command, allowed)) {
        return *misplaced;
    }
    const auto given = overrides(parser);
    if (const auto *error = std::get_if<UsageError>(&given)) {
        return *error;
    }
    const auto &accepted = std::get<Overrides>(given);
    if (command == "translate"_L1) {
        return parseTranslate(parser, accepted, textArguments(words, literalCount));
    }
    if (command == "polish"_L1) {
        return parsePolish(parser, accepted, textArguments(words, literalCount));
    }
    if (words.isEmpty()) {
        return UsageError{u"prompt takes the name of a saved prompt"_s};
    }
    const QString name = words.takeFirst();
    return Prompt{name, accepted, textArguments(words, literalCount)};
}

} // namespace

Request parse(const QStringList &arguments)
{
    QCommandLineParser parser;
    addOptions(parser);
    // The parser takes a program name first.
    if (!parser.parse(QStringList{u"orvesa-translate"_s} + arguments)) {
        return UsageError{parser.errorText().simplified()};
    }
    if (parser.isSet(helpOption)) {
        return ShowHelp{};
    }
    if (parser.isSet(versionOption)) {
        return ShowVersion{};
    }
    if (!parser.positionalArguments().isEmpty()) {
        const qsizetype optionsEnd = arguments.indexOf(u"--"_s);
        const qsizetype literalCount = optionsEnd < 0 ? 0 : arguments.size() - optionsEnd - 1;
        return parseCommand(parser, literalCount);
    }
    if (const auto misplaced = misplacedOption(parser, u"no command"_s, {performOption})) {
        return *misplaced;
    }
    if (parser.isSet(performOption)) {
        const QString action = parser.value(performOption);
        return outsideAction(action) ? Request(Perform{action}) : notOneOf(performOption, outsideActionNames());
    }
    return StartUtility{};
}

QString helpText()
{
    return uR"(Usage:
  orvesa-translate                      start the utility, or open its settings where it runs already
  orvesa-translate --perform ACTION     ask the running utility for an action:
                                        %3
  orvesa-translate translate [TEXT...]  translate a text and print the answer
      --to LANGUAGE                     into this language instead of the saved one
  orvesa-translate polish [TEXT...]     rewrite a text and print the answer
      --mode MODE                       %1
  orvesa-translate prompt NAME [TEXT...]
                                        run a saved prompt on a text and print the answer
  orvesa-translate recognize IMAGE      print the text in an image file
  orvesa-translate settings list        print every preference as KEY=VALUE
  orvesa-translate settings get KEY     print one, for example settings.targetLanguage or settings.model.openAI
  orvesa-translate settings set KEY VALUE
                                        change one; the running utility follows at once
  orvesa-translate settings reset KEY   go back to its default
  orvesa-translate key set PROVIDER     keep the API key that standard input holds
  orvesa-translate key clear PROVIDER   remove it
  orvesa-translate key status           say for which services a key is kept
  orvesa-translate autostart on|off|status
                                        start the utility at login
  orvesa-translate doctor               say what the utility finds on this desktop, and what is wrong with it
      --network                         also try to reach the chosen service
  orvesa-translate --version            print the version
  orvesa-translate --help               print this help

For translate, polish and prompt:
      --provider PROVIDER               %2
      --model MODEL                     any model of that service
      --thinking on|off                 let the model reason first (Gemini and Claude)

Without TEXT the text is read from standard input; a TEXT of "-" before any "--" stands for it. Keys come from the
desktop's key store. Exit codes: 0 success, 1 failure (the reason is on standard error), 2 wrong usage.
)"_s.arg(rawValues<PolishMode>(), rawValues<AIProviderType>(), outsideActionNames());
}

} // namespace orvesa::CommandLine
