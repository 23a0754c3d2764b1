#include "Platform/linux/DesktopTray.h"

#include "Platform/linux/SessionBus.h"
#include "Platform/linux/X11Event.h"

#include <QDBusMessage>
#include <QDBusVariant>
#include <QMetaObject>

#include <utility>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

constexpr int boundInMilliseconds = 250;

QString watcher()
{
    return u"org.kde.StatusNotifierWatcher"_s;
}

QString watcherPath()
{
    return u"/StatusNotifierWatcher"_s;
}

QString busService()
{
    return u"org.freedesktop.DBus"_s;
}

} // namespace

DesktopTray::DesktopTray(X11Connection &connection) : m_connection(connection) {}

DesktopTray::~DesktopTray()
{
    m_connection.removeEventHandler(m_token);
}

bool DesktopTray::isAvailable()
{
    return takesNotifierItems() || embedsWindows();
}

bool DesktopTray::takesNotifierItems() const
{
    auto bus = SessionBus::connection();
    if (!bus) {
        return false;
    }
    QDBusMessage question =
        QDBusMessage::createMethodCall(watcher(), watcherPath(), u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    question.setArguments({watcher(), u"IsStatusNotifierHostRegistered"_s});
    question.setAutoStartService(false);
    const QDBusMessage answer = bus->call(question, QDBus::Block, boundInMilliseconds);
    return answer.type() == QDBusMessage::ReplyMessage &&
           answer.arguments().value(0).value<QDBusVariant>().variant().toBool();
}

bool DesktopTray::embedsWindows()
{
    const QByteArray name = "_NET_SYSTEM_TRAY_S" + QByteArray::number(m_connection.screenNumber());
    const xcb_atom_t selection =
        m_connection.atom(std::string_view(name.constData(), static_cast<std::size_t>(name.size())));
    if (selection == XCB_ATOM_NONE) {
        return false;
    }
    const auto owner = m_connection.reply(xcb_get_selection_owner_reply,
                                          xcb_get_selection_owner(m_connection.connection(), selection));
    return owner && owner->owner != XCB_WINDOW_NONE;
}

void DesktopTray::whenAvailable(std::function<void()> handler)
{
    m_handler = std::move(handler);
    watch();
    QMetaObject::invokeMethod(this, &DesktopTray::look, Qt::QueuedConnection);
}

void DesktopTray::watch()
{
    if (auto bus = SessionBus::connection()) {
        bus->connect({}, watcherPath(), watcher(), u"StatusNotifierHostRegistered"_s, this, SLOT(announce()));
        bus->connect(busService(), u"/org/freedesktop/DBus"_s, busService(), u"NameOwnerChanged"_s, {watcher()}, {},
                     this, SLOT(look()));
    }
    if (m_connection.isValid()) {
        // A tray announces itself by a message to those who look at the root window's structure.
        constexpr quint32 mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
        xcb_change_window_attributes(m_connection.connection(), m_connection.root(), XCB_CW_EVENT_MASK, &mask);
        m_token = m_connection.addEventHandler([this](const xcb_generic_event_t &event) { handle(event); });
        m_connection.settle();
    }
}

void DesktopTray::stopWatching()
{
    if (auto bus = SessionBus::connection()) {
        bus->disconnect({}, watcherPath(), watcher(), u"StatusNotifierHostRegistered"_s, this, SLOT(announce()));
        bus->disconnect(busService(), u"/org/freedesktop/DBus"_s, busService(), u"NameOwnerChanged"_s, {watcher()}, {},
                        this, SLOT(look()));
    }
    m_connection.removeEventHandler(std::exchange(m_token, 0));
    if (m_connection.isValid()) {
        constexpr quint32 nothing = 0;
        xcb_change_window_attributes(m_connection.connection(), m_connection.root(), XCB_CW_EVENT_MASK, &nothing);
        m_connection.settle();
    }
}

void DesktopTray::handle(const xcb_generic_event_t &event)
{
    if (eventTypeOf(event) == XCB_CLIENT_MESSAGE &&
        reinterpret_cast<const xcb_client_message_event_t &>(event).type == m_connection.atom("MANAGER")) {
        look();
    }
}

void DesktopTray::look()
{
    if (m_handler && isAvailable()) {
        announce();
    }
}

void DesktopTray::announce()
{
    // What has just said that it is there may be too busy with its start to answer a question about it.
    if (!m_handler) {
        return;
    }
    const std::function<void()> handler = std::exchange(m_handler, nullptr);
    stopWatching();
    handler();
}

} // namespace orvesa
