#pragma once

// Keeps, removes and counts API keys from the command line. A key is read from standard input and is never shown.
//
// Main thread, inside a running core application.

#include "App/CommandLine.h"

#include <QCoroTask>

#include <functional>

namespace orvesa {

class KeychainService;

class KeyCommand final {
public:
    /// Reads a secret after asking the question.
    using Input = std::function<std::optional<QString>(const QString &question)>;

    /// The key store's service must outlive the command.
    KeyCommand(const KeychainService &keychain, Input input);

    [[nodiscard]] QCoro::Task<CommandLine::ExitCode> run(CommandLine::Key request) const;

private:
    [[nodiscard]] QCoro::Task<CommandLine::ExitCode> set(AIProviderType provider) const;
    [[nodiscard]] QCoro::Task<CommandLine::ExitCode> clear(AIProviderType provider) const;
    [[nodiscard]] QCoro::Task<CommandLine::ExitCode> status() const;

    const KeychainService &m_keychain;
    Input m_input;
};

} // namespace orvesa
