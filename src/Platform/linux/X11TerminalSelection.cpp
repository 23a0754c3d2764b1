#include "Platform/linux/X11TerminalSelection.h"

#include "Platform/linux/TerminalPrograms.h"
#include "Platform/linux/X11Event.h"
#include "Platform/linux/X11WindowOwner.h"

#include <xcb/xfixes.h>
#include <xcb/xinput.h>

namespace orvesa {

namespace {

constexpr qsizetype mostBytes = qsizetype{16} * 1024 * 1024;
constexpr quint32 selectingButton = 1;
/// Milliseconds within which clicks at one place belong together.
constexpr xcb_timestamp_t repeatBound = 400;
/// Milliseconds after a click within which taking PRIMARY anew is a part of it.
constexpr qint32 clickEcho = 100;
/// Pixels that a click, or the next one of several, may move.
constexpr int stillDistance = 3;

} // namespace

X11TerminalSelection::X11TerminalSelection(X11Connection &connection) : m_connection(connection), m_reader(connection)
{
}

X11TerminalSelection::~X11TerminalSelection()
{
    m_connection.removeEventHandler(m_token);
}

void X11TerminalSelection::watch()
{
    if (m_token != 0 || !m_connection.isValid()) {
        return;
    }
    xcb_connection_t *const raw = m_connection.connection();
    const quint64 lateBefore = m_connection.lateReplies();
    const xcb_query_extension_reply_t *const fixes = m_connection.extension(xcb_xfixes_id);
    const xcb_query_extension_reply_t *const input = fixes != nullptr ? m_connection.extension(xcb_input_id) : nullptr;
    if (input == nullptr ||
        !m_connection.reply(xcb_xfixes_query_version_reply,
                            xcb_xfixes_query_version(raw, XCB_XFIXES_MAJOR_VERSION, XCB_XFIXES_MINOR_VERSION)) ||
        !m_connection.reply(xcb_input_xi_query_version_reply, xcb_input_xi_query_version(raw, 2, 2))) {
        if (m_connection.lateReplies() != lateBefore && ++m_lateLooks < X11Connection::greatestLateAttempts) {
            m_connection.whenServerAnswers([this, alive = std::weak_ptr<bool>(m_alive)] {
                if (!alive.expired()) {
                    watch();
                }
            });
        }
        return;
    }
    m_fixesEvent = static_cast<quint8>(fixes->first_event + XCB_XFIXES_SELECTION_NOTIFY);
    m_inputOpcode = input->major_opcode;
    m_token = m_connection.addEventHandler([this](const xcb_generic_event_t &event) { handle(event); });
    xcb_xfixes_select_selection_input(raw, m_connection.root(), XCB_ATOM_PRIMARY,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER);
    findOwner();
}

void X11TerminalSelection::findOwner()
{
    const quint64 lateBefore = m_connection.lateReplies();
    const xcb_window_t owner = m_reader.owner(XCB_ATOM_PRIMARY);
    if (m_connection.lateReplies() != lateBefore) {
        findOwnerLater();
    } else {
        noteOwner(owner, XCB_CURRENT_TIME);
    }
}

void X11TerminalSelection::findOwnerLater()
{
    if (++m_lateLooks >= X11Connection::greatestLateAttempts) {
        return;
    }
    m_connection.whenServerAnswers([this, alive = std::weak_ptr<bool>(m_alive)] {
        if (!alive.expired()) {
            findOwner();
        }
    });
}

bool X11TerminalSelection::concerns(const xcb_generic_event_t &event) const
{
    const auto type = eventTypeOf(event);
    if (type == XCB_GE_GENERIC) {
        const auto &generic = reinterpret_cast<const xcb_ge_generic_event_t &>(event);
        return generic.extension == m_inputOpcode &&
               (generic.event_type == XCB_INPUT_RAW_BUTTON_PRESS || generic.event_type == XCB_INPUT_RAW_BUTTON_RELEASE);
    }
    return type == m_fixesEvent &&
           reinterpret_cast<const xcb_xfixes_selection_notify_event_t &>(event).selection == XCB_ATOM_PRIMARY;
}

void X11TerminalSelection::handle(const xcb_generic_event_t &event)
{
    const auto type = eventTypeOf(event);
    if (type == m_fixesEvent) {
        const auto &change = reinterpret_cast<const xcb_xfixes_selection_notify_event_t &>(event);
        if (change.selection == XCB_ATOM_PRIMARY) {
            noteOwner(change.owner, change.selection_timestamp);
        }
    } else if (type == XCB_GE_GENERIC && m_isListening) {
        const auto &button = reinterpret_cast<const xcb_input_raw_button_press_event_t &>(event);
        if (button.extension == m_inputOpcode && button.detail == selectingButton) {
            if (button.event_type == XCB_INPUT_RAW_BUTTON_PRESS) {
                notePress(button.time);
            } else if (button.event_type == XCB_INPUT_RAW_BUTTON_RELEASE) {
                noteRelease(button.time);
            }
        }
    }
}

std::optional<QPoint> X11TerminalSelection::pointer()
{
    const auto answer =
        m_connection.reply(xcb_query_pointer_reply, xcb_query_pointer(m_connection.connection(), m_connection.root()));
    return answer ? std::optional(QPoint(answer->root_x, answer->root_y)) : std::nullopt;
}

void X11TerminalSelection::notePress(xcb_timestamp_t time)
{
    const auto program = X11WindowOwner::program(m_connection, X11WindowOwner::underPointer(m_connection));
    m_pressedAt = program && program->window == m_terminal ? pointer() : std::nullopt;
    m_isRepeated = m_pressedAt && time - m_pressTime < repeatBound &&
                   (*m_pressedAt - m_lastPress).manhattanLength() <= stillDistance;
    if (m_pressedAt) {
        m_pressTime = time;
        m_lastPress = *m_pressedAt;
    }
}

void X11TerminalSelection::noteRelease(xcb_timestamp_t time)
{
    // These terminals keep PRIMARY when their highlight goes, and some even take it again then. So what the button did
    // has to tell: a drag and a repeated click select, a single click takes the highlight away.
    if (!m_pressedAt) {
        return;
    }
    if (const auto releasedAt = pointer()) {
        const bool isDrag = (*releasedAt - *m_pressedAt).manhattanLength() > stillDistance;
        m_isOver = !isDrag && !m_isRepeated;
        m_releaseTime = time;
    }
    m_pressedAt.reset();
}

void X11TerminalSelection::noteOwner(xcb_window_t owner, xcb_timestamp_t since)
{
    if (owner == m_owner) {
        m_isOver = m_isOver && static_cast<qint32>(since - m_releaseTime) <= clickEcho;
        return;
    }
    m_isOver = false;
    m_owner = owner;
    const quint64 lateBefore = m_connection.lateReplies();
    const auto program = owner == XCB_WINDOW_NONE ? std::nullopt : X11WindowOwner::program(m_connection, owner);
    if (m_connection.lateReplies() != lateBefore) {
        m_owner = XCB_WINDOW_NONE; // whose window it is has to be asked again
        findOwnerLater();
    } else {
        m_lateLooks = 0;
    }
    const bool isTerminal = program && TerminalPrograms::copyKeys(program->instanceName, program->className);
    m_terminal = isTerminal ? program->window : xcb_window_t{XCB_WINDOW_NONE};
    listenForClicks(isTerminal ? Listening::on : Listening::off);
}

void X11TerminalSelection::listenForClicks(Listening listening)
{
    if (m_isListening == (listening == Listening::on)) {
        return;
    }
    m_isListening = listening == Listening::on;
    struct {
        xcb_input_event_mask_t head;
        quint32 mask;
    } selection{{XCB_INPUT_DEVICE_ALL_MASTER, 1},
                m_isListening
                    ? quint32{XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_RELEASE}
                    : 0};
    xcb_input_xi_select_events(m_connection.connection(), m_connection.root(), 1, &selection.head);
    m_connection.settle();
}

bool X11TerminalSelection::isTerminal(qint64 processIdentifier)
{
    const auto program = X11WindowOwner::withKeyboard(m_connection);
    return program && TerminalPrograms::copyKeys(program->instanceName, program->className) &&
           X11WindowOwner::process(m_connection, program->window) == processIdentifier;
}

bool X11TerminalSelection::isInFront(xcb_window_t owner)
{
    // Some terminals have several windows in one process.
    const auto owning = X11WindowOwner::program(m_connection, owner);
    const auto typing = X11WindowOwner::withKeyboard(m_connection);
    return !owning || (typing && typing->window == owning->window);
}

std::optional<QString> X11TerminalSelection::text(qint64 processIdentifier)
{
    if (m_token != 0) {
        // Also what the event loop has not come to yet: a click just before the shortcut.
        for (const auto &event :
             m_connection.takeEvents([this](const xcb_generic_event_t &candidate) { return concerns(candidate); })) {
            handle(*event);
        }
    }
    const xcb_window_t owner = m_reader.owner(XCB_ATOM_PRIMARY);
    if (owner == XCB_WINDOW_NONE || (m_isOver && owner == m_owner) ||
        X11WindowOwner::process(m_connection, owner) != processIdentifier || !isInFront(owner)) {
        return std::nullopt;
    }
    const auto answer = m_reader.convertNow(XCB_ATOM_PRIMARY, m_connection.atom("UTF8_STRING"), mostBytes);
    if (answer.outcome != X11SelectionConversion::Outcome::data) {
        return std::nullopt;
    }
    return QString::fromUtf8(answer.data.bytes);
}

} // namespace orvesa
