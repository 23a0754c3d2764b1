#pragma once

// The process's standard streams, as UTF-8 text. For the command line; calls block until the stream is done.

#include <QString>

#include <optional>

namespace orvesa::StandardStreams {

/// All of standard input, unchanged; nothing when it cannot be read or is not UTF-8.
[[nodiscard]] std::optional<QString> readAll();

/// The text and a line break on standard output. Whether everything was written.
[[nodiscard]] bool writeOutput(const QString &text);

/// The text and a line break on standard error.
void writeError(const QString &text);

} // namespace orvesa::StandardStreams
