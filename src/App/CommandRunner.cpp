#include "App/CommandRunner.h"

#include "AI/AIProviderSource.h"
#include "App/StandardStreams.h"
#include "Core/SettingsStore.h"
#include "Models/AppError.h"
#include "Models/Text.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace orvesa {

using CommandLine::ExitCode;

namespace {

/// The text to work on, exactly as given; what is said when standard input does not give its part is in `trouble`.
std::optional<QString> sourceText(const QList<CommandLine::TextArgument> &arguments, QString &trouble)
{
    QString input;
    if (arguments.contains(std::nullopt)) {
        auto read = StandardStreams::readAll();
        if (const auto *failed = std::get_if<StandardStreams::InputTrouble>(&read)) {
            trouble = *failed == StandardStreams::InputTrouble::tooLarge
                          ? u"Standard input is larger than %1 MB."_s.arg(StandardStreams::mostInput >> 20)
                          : u"Standard input could not be read as UTF-8 text."_s;
            return std::nullopt;
        }
        input = std::get<QString>(std::move(read));
    }
    QStringList words;
    for (const CommandLine::TextArgument &argument : arguments) {
        words.append(argument ? *argument : input);
    }
    return words.join(u' ');
}

} // namespace

CommandRunner::CommandRunner(const SettingsStore &settings, const AIProviderSource &providers)
    : m_settings(settings), m_providers(providers)
{
}

QCoro::Task<ExitCode> CommandRunner::run(CommandLine::Request request) const
{
    if (const auto *translate = std::get_if<CommandLine::Translate>(&request)) {
        const QString language = translate->language.value_or(rawValue(m_settings.targetLanguage()));
        // Named first: GCC 12 destroys an aggregate made within a co_await expression twice.
        const AITask task = TranslateTask{language};
        co_return co_await generate(translate->text, task, translate->overrides);
    }
    if (const auto *polish = std::get_if<CommandLine::Polish>(&request)) {
        const PolishMode mode = polish->mode.value_or(m_settings.polishMode());
        const AITask task = PolishTask{mode};
        co_return co_await generate(polish->text, task, polish->overrides);
    }
    if (const auto *prompt = std::get_if<CommandLine::Prompt>(&request)) {
        const std::vector<CustomPrompt> &prompts = m_settings.customPrompts();
        const auto found = std::find_if(prompts.begin(), prompts.end(), [&](const CustomPrompt &candidate) {
            return candidate.shownName() == prompt->name;
        });
        if (found == prompts.end()) {
            StandardStreams::writeError(u"No saved prompt has the name “%1”."_s.arg(prompt->name));
            co_return ExitCode::failure;
        }
        co_return co_await generate(prompt->text, found->task(), prompt->overrides);
    }
    co_return ExitCode::usage;
}

QCoro::Task<ExitCode> CommandRunner::generate(QList<CommandLine::TextArgument> arguments, AITask task,
                                              CommandLine::Overrides overrides) const
{
    QString trouble;
    const std::optional<QString> text = sourceText(arguments, trouble);
    if (!text) {
        StandardStreams::writeError(trouble);
        co_return ExitCode::failure;
    }
    if (isBlank(*text)) {
        StandardStreams::writeError(AppError(AppError::Kind::noSelectedText).errorDescription());
        co_return ExitCode::failure;
    }
    AIProviderConfig config = m_settings.activeConfig();
    if (overrides.provider) {
        config.providerType = *overrides.provider;
        config.model = m_settings.model(config.providerType);
    }
    config.model = overrides.model.value_or(config.model);
    config.thinkingEnabled = overrides.thinking.value_or(config.thinkingEnabled);
    const std::unique_ptr<AIProvider> provider = m_providers.provider(config.providerType);
    QString failure;
    try {
        const QString answer = co_await provider->generate(*text, task, config);
        co_return StandardStreams::writeOutput(answer) ? ExitCode::success : ExitCode::failure;
    } catch (const std::exception &error) {
        failure = localizedDescription(error);
    }
    StandardStreams::writeError(failure);
    co_return ExitCode::failure;
}

} // namespace orvesa
