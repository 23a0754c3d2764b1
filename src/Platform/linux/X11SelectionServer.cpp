#include "Platform/linux/X11SelectionServer.h"

#include "Platform/linux/X11Event.h"

#include <algorithm>
#include <utility>

namespace orvesa {

namespace {

constexpr quint8 longFormat = 32;
constexpr int bitsPerByte = 8;
constexpr quint32 mostPairWords = 2048;

/// The server's clock begins anew every 49 days, so that a later time may be the smaller number.
bool isBefore(xcb_timestamp_t time, xcb_timestamp_t other)
{
    return static_cast<qint32>(time - other) < 0;
}

} // namespace

X11SelectionServer::X11SelectionServer() : m_transferTimer(this), m_handOverTimer(this)
{
    m_transferTimer.setSingleShot(true);
    connect(&m_transferTimer, &QTimer::timeout, this, [this] {
        while (!m_transfers.empty()) {
            forget(m_transfers.front().requestor);
        }
    });
    m_handOverTimer.setSingleShot(true);
    connect(&m_handOverTimer, &QTimer::timeout, this, [this] { finishHandOver(); });
}

X11SelectionServer::~X11SelectionServer()
{
    drop();
    m_connection.removeEventHandler(m_token);
}

bool X11SelectionServer::prepare()
{
    if (!m_connection.isValid()) {
        return false;
    }
    if (m_window != XCB_WINDOW_NONE) {
        return true;
    }
    xcb_connection_t *const raw = m_connection.connection();
    m_window = xcb_generate_id(raw);
    constexpr quint32 mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(raw, XCB_COPY_FROM_PARENT, m_window, m_connection.root(), -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &mask);
    m_token = m_connection.addEventHandler([this](const xcb_generic_event_t &event) { handle(event); });
    m_connection.settle();
    return true;
}

xcb_timestamp_t X11SelectionServer::serverTime()
{
    // The server says what time it is whenever a property changes.
    const xcb_atom_t property = m_connection.atom("ORVESA_TIME");
    xcb_change_property(m_connection.connection(), XCB_PROP_MODE_APPEND, m_window, property, XCB_ATOM_INTEGER,
                        longFormat, 0, nullptr);
    const auto changes = m_connection.takeEvents([&](const xcb_generic_event_t &event) {
        return eventTypeOf(event) == XCB_PROPERTY_NOTIFY &&
               reinterpret_cast<const xcb_property_notify_event_t &>(event).atom == property;
    });
    return changes.empty() ? xcb_timestamp_t{XCB_CURRENT_TIME}
                           : reinterpret_cast<const xcb_property_notify_event_t &>(*changes.back()).time;
}

bool X11SelectionServer::own(X11SelectionContents contents)
{
    if (!prepare()) {
        return false;
    }
    xcb_connection_t *const raw = m_connection.connection();
    const xcb_atom_t clipboard = m_connection.atom("CLIPBOARD");
    const xcb_timestamp_t now = serverTime();
    xcb_set_selection_owner(raw, m_window, clipboard, now);
    const auto owner = m_connection.reply(xcb_get_selection_owner_reply, xcb_get_selection_owner(raw, clipboard));
    // A server that another program has to itself for a while says nothing now and does as it was told afterwards: the
    // contents must be here then, or they would be lost.
    if (!m_connection.isValid() || (owner && owner->owner != m_window)) {
        return false;
    }
    // Answers under way go on with what they began with.
    m_contents = std::move(contents);
    m_since = now;
    m_isOwner = true;
    return true;
}

void X11SelectionServer::drop()
{
    if (m_contents.secrecy == X11SelectionContents::Secrecy::secret) {
        for (Entry &entry : m_contents.entries) {
            entry.bytes.fill('\0');
        }
    }
    m_contents = {};
    m_isOwner = false;
}

void X11SelectionServer::handle(const xcb_generic_event_t &event)
{
    switch (eventTypeOf(event)) {
    case XCB_SELECTION_REQUEST:
        answer(reinterpret_cast<const xcb_selection_request_event_t &>(event));
        break;
    case XCB_SELECTION_CLEAR: {
        // One that was on its way while the selection was taken again is about the ownership before.
        const auto &clear = reinterpret_cast<const xcb_selection_clear_event_t &>(event);
        if (clear.owner == m_window && (clear.time == XCB_CURRENT_TIME || !isBefore(clear.time, m_since))) {
            drop();
            finishHandOver();
        }
        break;
    }
    case XCB_PROPERTY_NOTIFY: {
        const auto &change = reinterpret_cast<const xcb_property_notify_event_t &>(event);
        const auto transfer = std::ranges::find_if(m_transfers, [&](const Transfer &candidate) {
            return candidate.requestor == change.window && candidate.property == change.atom;
        });
        if (change.state == XCB_PROPERTY_DELETE && transfer != m_transfers.end()) {
            sendNextPiece(*transfer);
        }
        break;
    }
    case XCB_DESTROY_NOTIFY:
        forget(reinterpret_cast<const xcb_destroy_notify_event_t &>(event).window);
        break;
    case XCB_SELECTION_NOTIFY:
        finishHandOver();
        break;
    default:
        break;
    }
}

void X11SelectionServer::answer(const xcb_selection_request_event_t &request)
{
    // Old clients name no property and expect the target's name.
    const xcb_atom_t property = request.property == XCB_ATOM_NONE ? request.target : request.property;
    const bool isCurrent =
        m_isOwner && request.owner == m_window && request.selection == m_connection.atom("CLIPBOARD") &&
        (request.time == XCB_CURRENT_TIME || m_since == XCB_CURRENT_TIME || !isBefore(request.time, m_since));
    bool isProvided = false;
    if (isCurrent && request.target == m_connection.atom("MULTIPLE")) {
        isProvided = request.property != XCB_ATOM_NONE && provideSeveral(request.requestor, property);
    } else if (isCurrent) {
        isProvided = provide(request.requestor, request.target, property);
    }
    union {
        xcb_selection_notify_event_t event;
        char bytes[sizeof(xcb_generic_event_t)]; // events travel in this size
    } notification{};
    notification.event.response_type = XCB_SELECTION_NOTIFY;
    notification.event.time = request.time;
    notification.event.requestor = request.requestor;
    notification.event.selection = request.selection;
    notification.event.target = request.target;
    notification.event.property = isProvided ? property : xcb_atom_t{XCB_ATOM_NONE};
    xcb_send_event(m_connection.connection(), 0, request.requestor, XCB_EVENT_MASK_NO_EVENT, notification.bytes);
    m_connection.settle();
}

bool X11SelectionServer::provide(xcb_window_t requestor, xcb_atom_t target, xcb_atom_t property)
{
    const auto entry = std::ranges::find(m_contents.entries, target, &Entry::target);
    if (entry == m_contents.entries.end()) {
        return false;
    }
    switch (entry->kind) {
    case X11SelectionContents::Kind::targets:
        setAtoms(requestor, property, XCB_ATOM_ATOM, targets());
        break;
    case X11SelectionContents::Kind::timestamp:
        setAtoms(requestor, property, XCB_ATOM_INTEGER, {m_since});
        break;
    case X11SelectionContents::Kind::handOver:
        setAtoms(requestor, property, m_connection.atom("NULL"), {});
        break;
    case X11SelectionContents::Kind::multiple:
        return false;
    case X11SelectionContents::Kind::data:
        if (entry->bytes.size() > pieceSize) {
            provideInPieces(requestor, property, *entry);
        } else {
            setProperty(requestor, property, *entry, entry->bytes.constData(), entry->bytes.size());
        }
        break;
    }
    return true;
}

bool X11SelectionServer::provideSeveral(xcb_window_t requestor, xcb_atom_t property)
{
    // Pairs of a target and a property to put it into; the target's place is cleared where there are no data.
    const auto pairs =
        m_connection.reply(xcb_get_property_reply, xcb_get_property(m_connection.connection(), 0, requestor, property,
                                                                    XCB_ATOM_ANY, 0, mostPairWords));
    if (!pairs || pairs->format != longFormat || pairs->value_len % 2 != 0) {
        return false;
    }
    const auto *const values = static_cast<const xcb_atom_t *>(xcb_get_property_value(pairs.get()));
    std::vector<xcb_atom_t> answered(values, values + pairs->value_len);
    for (std::size_t index = 0; index < answered.size(); index += 2) {
        if (answered[index + 1] == XCB_ATOM_NONE || !provide(requestor, answered[index], answered[index + 1])) {
            answered[index + 1] = XCB_ATOM_NONE;
        }
    }
    setAtoms(requestor, property, pairs->type, answered);
    return true;
}

void X11SelectionServer::provideInPieces(xcb_window_t requestor, xcb_atom_t property, const Entry &entry)
{
    xcb_connection_t *const raw = m_connection.connection();
    constexpr quint32 mask = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(raw, requestor, XCB_CW_EVENT_MASK, &mask);
    std::erase_if(m_transfers, [&](const Transfer &transfer) {
        return transfer.requestor == requestor && transfer.property == property;
    });
    m_transfers.push_back({requestor, property, entry, 0});
    setAtoms(requestor, property, m_connection.atom("INCR"), {static_cast<xcb_atom_t>(entry.bytes.size())});
    restartTransferTimer();
}

void X11SelectionServer::sendNextPiece(Transfer &transfer)
{
    const qsizetype size = std::min(pieceSize, transfer.entry.bytes.size() - transfer.position);
    setProperty(transfer.requestor, transfer.property, transfer.entry,
                transfer.entry.bytes.constData() + transfer.position, size);
    transfer.position += size;
    if (size == 0) { // an empty piece is the last
        const xcb_window_t requestor = transfer.requestor;
        const xcb_atom_t property = transfer.property;
        std::erase_if(m_transfers, [&](const Transfer &candidate) {
            return candidate.requestor == requestor && candidate.property == property;
        });
        if (std::ranges::find(m_transfers, requestor, &Transfer::requestor) == m_transfers.end()) {
            constexpr quint32 mask = XCB_EVENT_MASK_NO_EVENT;
            xcb_change_window_attributes(m_connection.connection(), requestor, XCB_CW_EVENT_MASK, &mask);
        }
    }
    restartTransferTimer();
    m_connection.settle();
}

void X11SelectionServer::setProperty(xcb_window_t window, xcb_atom_t property, const Entry &entry, const char *bytes,
                                     qsizetype size)
{
    const auto valueSize = qsizetype{entry.format} / bitsPerByte;
    xcb_change_property(m_connection.connection(), XCB_PROP_MODE_REPLACE, window, property, entry.type, entry.format,
                        static_cast<quint32>(size / valueSize), bytes);
}

void X11SelectionServer::setAtoms(xcb_window_t window, xcb_atom_t property, xcb_atom_t type,
                                  const std::vector<xcb_atom_t> &atoms)
{
    xcb_change_property(m_connection.connection(), XCB_PROP_MODE_REPLACE, window, property, type, longFormat,
                        static_cast<quint32>(atoms.size()), atoms.data());
}

void X11SelectionServer::forget(xcb_window_t requestor)
{
    std::erase_if(m_transfers, [&](const Transfer &transfer) { return transfer.requestor == requestor; });
    restartTransferTimer();
}

void X11SelectionServer::restartTransferTimer()
{
    if (m_transfers.empty()) {
        m_transferTimer.stop();
    } else {
        m_transferTimer.start(transferBound);
    }
}

std::vector<xcb_atom_t> X11SelectionServer::targets() const
{
    std::vector<xcb_atom_t> atoms;
    std::ranges::transform(m_contents.entries, std::back_inserter(atoms), &Entry::target);
    return atoms;
}

void X11SelectionServer::handOver(std::function<void()> done)
{
    m_handedOver = std::move(done);
    if (!m_isOwner || m_contents.secrecy == X11SelectionContents::Secrecy::secret || !m_connection.isValid()) {
        finishHandOver();
        return;
    }
    xcb_connection_t *const raw = m_connection.connection();
    const xcb_atom_t manager = m_connection.atom("CLIPBOARD_MANAGER");
    const auto running = m_connection.reply(xcb_get_selection_owner_reply, xcb_get_selection_owner(raw, manager));
    if (!running || running->owner == XCB_WINDOW_NONE) {
        finishHandOver();
        return;
    }
    std::vector<xcb_atom_t> saved;
    for (const Entry &entry : m_contents.entries) {
        if (entry.kind == X11SelectionContents::Kind::data) {
            saved.push_back(entry.target);
        }
    }
    const xcb_atom_t property = m_connection.atom("ORVESA_SAVED_TARGETS");
    setAtoms(m_window, property, XCB_ATOM_ATOM, saved);
    xcb_convert_selection(raw, m_window, manager, m_connection.atom("SAVE_TARGETS"), property, serverTime());
    m_handOverTimer.start(handOverBound);
    m_connection.settle();
}

void X11SelectionServer::finishHandOver()
{
    m_handOverTimer.stop();
    if (m_handedOver) {
        const auto done = std::exchange(m_handedOver, nullptr);
        done();
    }
}

} // namespace orvesa
