#include "Platform/linux/X11SelectionConversion.h"

#include "Platform/linux/X11Event.h"

namespace orvesa {

namespace {

constexpr quint32 wordsPerQuestion = 256 * 1024; // one megabyte
constexpr quint32 bytesPerWord = 4;

} // namespace

X11SelectionConversion::X11SelectionConversion(X11Connection &connection, xcb_atom_t selection, xcb_atom_t target,
                                               qsizetype mostBytes)
    : m_connection(connection), m_property(connection.atom("ORVESA_SELECTION")), m_mostBytes(mostBytes)
{
    if (!m_connection.isValid() || selection == XCB_ATOM_NONE || target == XCB_ATOM_NONE) {
        m_outcome = Outcome::refused;
        return;
    }
    xcb_connection_t *const raw = m_connection.connection();
    m_window = xcb_generate_id(raw);
    constexpr quint32 mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(raw, XCB_COPY_FROM_PARENT, m_window, m_connection.root(), -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &mask);
    xcb_convert_selection(raw, m_window, selection, target, m_property, XCB_CURRENT_TIME);
    m_connection.settle();
}

X11SelectionConversion::~X11SelectionConversion()
{
    if (m_window != XCB_WINDOW_NONE && m_connection.isValid()) {
        xcb_destroy_window(m_connection.connection(), m_window);
        m_connection.settle();
    }
}

bool X11SelectionConversion::concerns(const xcb_generic_event_t &event) const
{
    const auto type = eventTypeOf(event);
    if (type == XCB_SELECTION_NOTIFY) {
        return reinterpret_cast<const xcb_selection_notify_event_t &>(event).requestor == m_window;
    }
    return type == XCB_PROPERTY_NOTIFY &&
           reinterpret_cast<const xcb_property_notify_event_t &>(event).window == m_window;
}

void X11SelectionConversion::handle(const xcb_generic_event_t &event)
{
    if (m_outcome != Outcome::pending) {
        return;
    }
    if (eventTypeOf(event) == XCB_SELECTION_NOTIFY) {
        takeAnswer(reinterpret_cast<const xcb_selection_notify_event_t &>(event).property);
        return;
    }
    const auto &change = reinterpret_cast<const xcb_property_notify_event_t &>(event);
    if (m_isInPieces && change.atom == m_property && change.state == XCB_PROPERTY_NEW_VALUE) {
        takePiece();
    }
}

void X11SelectionConversion::takeAnswer(xcb_atom_t property)
{
    if (m_isInPieces) {
        return;
    }
    ++m_progress;
    if (property == XCB_ATOM_NONE || !takeProperty()) {
        m_outcome = m_outcome == Outcome::tooLarge ? m_outcome : Outcome::refused;
    } else if (m_data.type == m_connection.atom("INCR")) {
        // What it held is the least size; deleting it has asked for the first piece.
        m_isInPieces = true;
        m_data = {};
    } else {
        m_outcome = Outcome::data;
    }
}

void X11SelectionConversion::takePiece()
{
    ++m_progress;
    if (!takeProperty()) {
        m_outcome = m_outcome == Outcome::tooLarge ? m_outcome : Outcome::refused;
    } else if (m_lastPiece == 0) {
        m_outcome = Outcome::data;
    }
}

bool X11SelectionConversion::takeProperty()
{
    xcb_connection_t *const raw = m_connection.connection();
    m_lastPiece = 0;
    quint32 offset = 0;
    for (bool goesOn = true; goesOn;) {
        // The server deletes it with the last of its words.
        const auto answer =
            m_connection.reply(xcb_get_property_reply,
                               xcb_get_property(raw, 1, m_window, m_property, XCB_ATOM_ANY, offset, wordsPerQuestion));
        if (!answer || answer->type == XCB_ATOM_NONE) {
            return false;
        }
        const auto size = qsizetype{xcb_get_property_value_length(answer.get())};
        if (m_data.bytes.size() + size > m_mostBytes) {
            m_outcome = Outcome::tooLarge;
            return false;
        }
        m_data.bytes.append(static_cast<const char *>(xcb_get_property_value(answer.get())), size);
        m_data.type = answer->type;
        m_data.format = answer->format;
        m_lastPiece += size;
        offset += static_cast<quint32>(size) / bytesPerWord;
        goesOn = answer->bytes_after > 0;
    }
    return true;
}

} // namespace orvesa
