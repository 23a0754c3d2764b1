#pragma once

// Reads a secret from standard input: all of it, or from a terminal one line that is not shown while it is typed.
// Blocks until it is there. Main thread, without an event loop.

#include <QString>

#include <optional>

namespace orvesa::SecretInput {

/// `question` is written to standard error where somebody sits at a terminal. Nothing when the input cannot be read, is
/// not UTF-8, or is longer than 64 KiB. A signal that ends or stops the program finds the terminal as it was.
[[nodiscard]] std::optional<QString> read(const QString &question);

} // namespace orvesa::SecretInput
