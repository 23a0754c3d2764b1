#include "Platform/linux/X11TerminalSelection.h"

#include "Platform/linux/TerminalPrograms.h"
#include "Platform/linux/X11WindowOwner.h"

namespace orvesa {

namespace {

constexpr qsizetype mostBytes = 16 * 1024 * 1024;

} // namespace

X11TerminalSelection::X11TerminalSelection(X11Connection &connection) : m_connection(connection), m_reader(connection)
{
}

bool X11TerminalSelection::isTerminal(qint64 processIdentifier)
{
    const auto program = X11WindowOwner::withKeyboard(m_connection);
    return program && TerminalPrograms::copyKeys(program->instanceName, program->className) &&
           X11WindowOwner::process(m_connection, program->window) == processIdentifier;
}

std::optional<QString> X11TerminalSelection::text(qint64 processIdentifier)
{
    const xcb_window_t owner = m_reader.owner(XCB_ATOM_PRIMARY);
    if (owner == XCB_WINDOW_NONE || X11WindowOwner::process(m_connection, owner) != processIdentifier) {
        return std::nullopt;
    }
    const auto answer = m_reader.convertNow(XCB_ATOM_PRIMARY, m_connection.atom("UTF8_STRING"), mostBytes);
    if (answer.outcome != X11SelectionConversion::Outcome::data) {
        return std::nullopt;
    }
    return QString::fromUtf8(answer.data.bytes);
}

} // namespace orvesa
