#pragma once

// What is selected in a terminal that tells nobody: the PRIMARY selection, where the terminal itself owns it.
//
// Main thread. PRIMARY outlives what it was made from in many programs, so it is asked for nowhere else.

#include "Platform/linux/X11SelectionReader.h"

#include <QString>

#include <optional>

namespace orvesa {

class X11TerminalSelection final {
public:
    /// The connection must outlive this object.
    explicit X11TerminalSelection(X11Connection &connection);

    /// Whether the process' window has the keyboard and is that of a known terminal.
    [[nodiscard]] bool isTerminal(qint64 processIdentifier);
    /// Nothing when another program owns PRIMARY, or the terminal does not hand it over within 250 ms.
    [[nodiscard]] std::optional<QString> text(qint64 processIdentifier);

private:
    X11Connection &m_connection;
    X11SelectionReader m_reader;
};

} // namespace orvesa
