#include "Platform/linux/X11Ping.h"

#include "Platform/linux/X11Event.h"

#include <QDeadlineTimer>

#include <algorithm>

namespace orvesa::X11Ping {

namespace {

constexpr quint8 longFormat = 32;
constexpr quint32 mostProtocols = 32;

void listen(X11Connection &connection, quint32 mask)
{
    xcb_change_window_attributes(connection.connection(), connection.root(), XCB_CW_EVENT_MASK, &mask);
}

} // namespace

bool answers(X11Connection &connection, xcb_window_t window)
{
    const xcb_atom_t ping = connection.atom("_NET_WM_PING");
    const auto protocols = connection.property(window, "WM_PROTOCOLS", mostProtocols);
    if (!connection.isValid() || std::ranges::find(protocols, ping) == protocols.end()) {
        return true;
    }
    // The answer is the question sent back to the root window. The number tells ours from a window manager's.
    static quint32 number = 0x4f520000;
    const quint32 mark = ++number;
    union {
        xcb_client_message_event_t event;
        char bytes[sizeof(xcb_generic_event_t)];
    } question{};
    question.event.response_type = XCB_CLIENT_MESSAGE;
    question.event.format = longFormat;
    question.event.window = window;
    question.event.type = connection.atom("WM_PROTOCOLS");
    question.event.data.data32[0] = ping;
    question.event.data.data32[1] = mark;
    question.event.data.data32[2] = window;
    listen(connection, XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
    xcb_send_event(connection.connection(), 0, window, XCB_EVENT_MASK_NO_EVENT, question.bytes);
    const auto isRootEvent = [&](const xcb_generic_event_t &event) {
        const auto type = eventTypeOf(event);
        return type == XCB_CLIENT_MESSAGE || (type >= XCB_CREATE_NOTIFY && type <= XCB_CIRCULATE_NOTIFY);
    };
    const QDeadlineTimer deadline(X11Connection::replyBound, Qt::PreciseTimer);
    bool isAnswered = false;
    while (!isAnswered && !deadline.hasExpired() && connection.isValid()) {
        const auto events = connection.takeEvents(isRootEvent);
        isAnswered = std::ranges::any_of(events, [&](const auto &event) {
            const auto &message = reinterpret_cast<const xcb_client_message_event_t &>(*event);
            return eventTypeOf(*event) == XCB_CLIENT_MESSAGE && message.data.data32[0] == ping &&
                   message.data.data32[1] == mark;
        });
        if (!isAnswered) {
            connection.awaitInput(deadline);
        }
    }
    if (connection.isValid()) {
        listen(connection, XCB_EVENT_MASK_NO_EVENT);
        connection.settle();
    }
    return isAnswered;
}

} // namespace orvesa::X11Ping
