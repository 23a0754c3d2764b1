#pragma once

// Programs in whose windows the usual copy keys interrupt what runs there. Pure tables and questions to the kernel; any
// thread.

#include <QByteArray>

#include <optional>

namespace orvesa::TerminalPrograms {

enum class CopyKeys {
    none,         ///< it has no keys for copying
    controlShift, ///< Control, Shift and C
};

/// How the terminal with these window names copies; nothing for a program that is not a known terminal.
[[nodiscard]] std::optional<CopyKeys> copyKeys(const QByteArray &instanceName, const QByteArray &className);

/// Whether the process, or one that it has started, has made a terminal for other programs: a terminal that is not
/// known, or an editor with one inside. True where that cannot be found out.
[[nodiscard]] bool holdsTerminal(qint64 processIdentifier);

} // namespace orvesa::TerminalPrograms
