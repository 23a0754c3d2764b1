#include "desktop/XSession.h"

#include "desktop/Waiting.h"

#include <xcb/xfixes.h>

#include <QSocketNotifier>

#include <array>

namespace orvesa::desktop {

using namespace Qt::StringLiterals;

namespace {

constexpr quint32 watchedEvents = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY |
                                  XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_FOCUS_CHANGE;
constexpr quint8 sentEventBit = 0x80;

} // namespace

XSession::XSession(const QString &display)
{
    int screenNumber = 0;
    m_connection = xcb_connect(display.toUtf8().constData(), &screenNumber);
    if (xcb_connection_has_error(m_connection) != 0) {
        xcb_disconnect(m_connection);
        throw DesktopError(u"the display %1 cannot be opened"_s.arg(display));
    }
    m_screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
    m_window = xcb_generate_id(m_connection);
    xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, m_window, root(), -10, -10, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    watch(m_window);
    watch(root());
    listen();
    m_notifier = std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(m_connection), QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, [this] { takeEvents(xcb_poll_for_event); });
}

XSession::~XSession()
{
    m_notifier.reset();
    xcb_disconnect(m_connection);
}

void XSession::listen()
{
    const XReply<xcb_xfixes_query_version_reply_t> version(
        xcb_xfixes_query_version_reply(m_connection, xcb_xfixes_query_version(m_connection, 5, 0), nullptr));
    if (!version)
        throw DesktopError(u"the display has no XFixes"_s);
    m_firstFixesEvent = xcb_get_extension_data(m_connection, &xcb_xfixes_id)->first_event;
    for (const char *name : {"PRIMARY", "CLIPBOARD"})
        xcb_xfixes_select_selection_input(m_connection, root(), atom(name),
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                              XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                              XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    synchronize();
}

xcb_atom_t XSession::atom(const QByteArray &name)
{
    if (const auto known = m_atoms.constFind(name); known != m_atoms.cend())
        return *known;
    const XReply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
        m_connection, xcb_intern_atom(m_connection, 0, static_cast<quint16>(name.size()), name.constData()), nullptr));
    if (!reply)
        throw DesktopError(u"the display connection broke"_s);
    m_atomNames.insert(reply->atom, name);
    return *m_atoms.insert(name, reply->atom);
}

QByteArray XSession::atomName(xcb_atom_t atom)
{
    if (const auto known = m_atomNames.constFind(atom); known != m_atomNames.cend())
        return *known;
    const XReply<xcb_get_atom_name_reply_t> reply(
        xcb_get_atom_name_reply(m_connection, xcb_get_atom_name(m_connection, atom), nullptr));
    if (!reply)
        return {};
    return *m_atomNames.insert(
        atom, QByteArray(xcb_get_atom_name_name(reply.get()), xcb_get_atom_name_name_length(reply.get())));
}

void XSession::watch(xcb_window_t window)
{
    if (m_watched.contains(window))
        return;
    m_watched.insert(window);
    xcb_change_window_attributes(m_connection, window, XCB_CW_EVENT_MASK, &watchedEvents);
}

void XSession::synchronize()
{
    const XReply<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr));
    if (!reply)
        throw DesktopError(u"the display connection broke"_s);
}

XSession::Property XSession::property(xcb_window_t window, xcb_atom_t name) const
{
    constexpr quint32 mostWords = 16 * 1024 * 1024;
    const XReply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        m_connection, xcb_get_property(m_connection, 0, window, name, XCB_GET_PROPERTY_TYPE_ANY, 0, mostWords),
        nullptr));
    if (!reply)
        return {};
    return {reply->type, QByteArray(static_cast<const char *>(xcb_get_property_value(reply.get())),
                                    xcb_get_property_value_length(reply.get()))};
}

void XSession::sendToRoot(xcb_window_t window, const QByteArray &message, const std::array<quint32, 5> &data)
{
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = atom(message);
    std::copy(data.begin(), data.end(), event.data.data32);
    xcb_send_event(m_connection, 0, root(), XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char *>(&event));
    synchronize();
}

void XSession::requestSelection(xcb_atom_t selection, xcb_atom_t target, xcb_atom_t property)
{
    m_selectionAnswer.reset();
    xcb_delete_property(m_connection, m_window, property);
    xcb_convert_selection(m_connection, m_window, selection, target, property, XCB_CURRENT_TIME);
    xcb_flush(m_connection);
}

bool XSession::takeEvents(xcb_generic_event_t *(*next)(xcb_connection_t *))
{
    bool any = false;
    while (const XReply<xcb_generic_event_t> event{next(m_connection)}) {
        handle(*event);
        any = true;
    }
    if (xcb_connection_has_error(m_connection) != 0 && m_notifier)
        m_notifier->setEnabled(false); // the server is gone; its socket would be readable for ever
    return any;
}

bool XSession::takeQueuedEvents()
{
    return takeEvents(xcb_poll_for_queued_event);
}

void XSession::handle(const xcb_generic_event_t &event)
{
    const auto type = static_cast<quint8>(event.response_type & ~sentEventBit);
    if (type == m_firstFixesEvent + XCB_XFIXES_SELECTION_NOTIFY) {
        ++m_selectionChanges[reinterpret_cast<const xcb_xfixes_selection_notify_event_t &>(event).selection];
    } else if (type == XCB_SELECTION_NOTIFY) {
        m_selectionAnswer = reinterpret_cast<const xcb_selection_notify_event_t &>(event).property;
    } else if (type == XCB_DESTROY_NOTIFY) {
        m_watched.remove(reinterpret_cast<const xcb_destroy_notify_event_t &>(event).window);
    }
}

} // namespace orvesa::desktop
