#include "App/KeyCommand.h"

#include "App/StandardStreams.h"
#include "Core/KeychainError.h"
#include "Core/KeychainService.h"
#include "Core/Localization.h"
#include "Models/Text.h"
#include "Platform/SecretBuffer.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace orvesa {

using CommandLine::ExitCode;

KeyCommand::KeyCommand(const KeychainService &keychain, Input input) : m_keychain(keychain), m_input(std::move(input))
{
}

QCoro::Task<ExitCode> KeyCommand::run(CommandLine::Key request) const
{
    using Action = CommandLine::Key::Action;
    if (request.action == Action::set && request.provider) {
        co_return co_await set(*request.provider);
    }
    if (request.action == Action::clear && request.provider) {
        co_return co_await clear(*request.provider);
    }
    co_return co_await status();
}

QCoro::Task<ExitCode> KeyCommand::set(AIProviderType provider) const
{
    std::optional<QString> input = m_input(u"API key for %1: "_s.arg(displayName(provider)));
    if (!input) {
        StandardStreams::writeError(u"No key could be read from standard input."_s);
        co_return ExitCode::failure;
    }
    const SecretClearing clearingInput(*input);
    QString key = trimmedWhitespaceAndNewlines(*input).toString();
    const SecretClearing clearingKey(key);
    const bool isOneLine =
        std::ranges::none_of(key, [](QChar character) { return character.category() == QChar::Other_Control; });
    if (key.isEmpty() || !isOneLine) {
        StandardStreams::writeError(u"Standard input has to hold the key: one line that is not blank."_s);
        co_return ExitCode::failure;
    }
    QString failure;
    try {
        co_await m_keychain.set(key, keychainAccount(provider));
    } catch (const KeychainError &error) {
        failure = error.errorDescription();
    }
    if (failure.isEmpty()) {
        co_return ExitCode::success;
    }
    StandardStreams::writeError(Localization::format(L10nKey::msgSaveFailed, failure));
    co_return ExitCode::failure;
}

QCoro::Task<ExitCode> KeyCommand::clear(AIProviderType provider) const
{
    QString failure;
    try {
        co_await m_keychain.remove(keychainAccount(provider));
    } catch (const KeychainError &error) {
        failure = error.errorDescription();
    }
    if (failure.isEmpty()) {
        co_return ExitCode::success;
    }
    StandardStreams::writeError(Localization::format(L10nKey::msgRemoveFailed, failure));
    co_return ExitCode::failure;
}

QCoro::Task<ExitCode> KeyCommand::status() const
{
    QStringList lines;
    QString failure;
    try {
        for (const AIProviderType provider : allCases<AIProviderType>()) {
            const bool isStored =
                co_await m_keychain.hasValue(keychainAccount(provider), KeychainService::Failures::thrown);
            lines.append(rawValue(provider) + (isStored ? u"=stored"_s : u"=missing"_s));
        }
    } catch (const KeychainError &error) {
        // What a store without an answer holds is not missing, and who has declined to unlock it is not asked again.
        failure = error.errorDescription();
    }
    if (!failure.isEmpty()) {
        StandardStreams::writeError(
            u"The key store could not be asked: %1. \"orvesa-translate doctor\" says why."_s.arg(failure));
        co_return ExitCode::failure;
    }
    co_return StandardStreams::writeOutput(lines.join(u'\n')) ? ExitCode::success : ExitCode::failure;
}

} // namespace orvesa
