#pragma once

// The process's standard streams, as UTF-8 text. For the command line; calls block until the stream is done.
// Main thread.

#include <QString>

#include <variant>

namespace orvesa::StandardStreams {

/// More than anyone has translated, and less than would fill the memory.
inline constexpr qsizetype mostInput = qsizetype{16} * 1024 * 1024;

enum class InputTrouble { unreadable, tooLarge };

/// For the very beginning of the process: reserves the places of streams that it was started without. Whatever was
/// opened first would come to stand there otherwise, and answers would go into it. Such a stream can be neither read
/// nor written.
void reserveMissing();

/// All of standard input, unchanged; unreadable when it is not UTF-8 either.
[[nodiscard]] std::variant<QString, InputTrouble> readAll();

/// The text and a line break on standard output. Whether everything was written. Unchanged, but that a terminal gets no
/// control characters: what a service answers must not command it.
[[nodiscard]] bool writeOutput(const QString &text);

/// The text and a line break on standard error; a terminal gets no control characters.
void writeError(const QString &text);

} // namespace orvesa::StandardStreams
