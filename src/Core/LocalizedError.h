#pragma once

// The common base of the program's own exceptions: each one words itself for the user.
//
// Thrown by value, caught by reference; copyable. Main thread only, because wording looks up the interface language.

#include <QString>

#include <exception>

namespace orvesa {

class LocalizedError : public std::exception {
public:
    /// One sentence for the user, in the interface language of the moment of the call. Plain text.
    [[nodiscard]] virtual QString errorDescription() const = 0;

    /// For debuggers only; never shown and never logged.
    [[nodiscard]] const char *what() const noexcept override;
};

/// The text by which any exception is shown: a LocalizedError's description, otherwise its what() read as UTF-8.
[[nodiscard]] QString localizedDescription(const std::exception &error);

} // namespace orvesa
