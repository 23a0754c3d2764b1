#pragma once

// Shows and changes preferences from the command line, by the keys and in the forms in which they are stored.
//
// Main thread. What is shown is what the program goes by: the stored value, or its default where none is stored or it
// is not understood. A running utility takes a change over by itself. API keys are no preferences and cannot be
// reached.

#include "App/CommandLine.h"
#include "Platform/PreferredLanguagesPort.h"
#include "Platform/UserDefaultsPort.h"

namespace orvesa {

class SettingsCommand final {
public:
    SettingsCommand(UserDefaultsPort &defaults, const PreferredLanguagesPort &languages);

    /// Prints to the standard streams. An unknown key and a value that the key does not allow are wrong usage; a change
    /// that cannot be written is a failure.
    [[nodiscard]] CommandLine::ExitCode run(const CommandLine::Settings &request) const;

private:
    [[nodiscard]] CommandLine::ExitCode list() const;
    [[nodiscard]] CommandLine::ExitCode written() const;

    UserDefaultsPort &m_defaults;
    const PreferredLanguagesPort &m_languages;
};

} // namespace orvesa
