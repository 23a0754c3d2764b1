#include "desktop/AccessibleTree.h"

#include <QDBusConnectionInterface>
#include <QDBusVariant>
#include <QUuid>

namespace orvesa::desktop {

using namespace Qt::StringLiterals;

namespace {

constexpr int callTimeoutMilliseconds = 2'000;

} // namespace

AccessibleTree::AccessibleTree(const QString &address, Listening listening)
    : m_connectionName(u"desktop-accessibility-"_s + QUuid::createUuid().toString(QUuid::WithoutBraces)),
      m_connection(QDBusConnection::connectToBus(address, m_connectionName))
{
    if (!m_connection.isConnected())
        throw DesktopError(u"no connection to the accessibility bus: %1"_s.arg(m_connection.lastError().message()));
    const QStringList kinds =
        listening == Listening::present ? QStringList{u"Object"_s, u"Window"_s, u"Focus"_s} : QStringList();
    for (const QString &events : kinds) {
        m_connection.connect({}, {}, u"org.a11y.atspi.Event."_s + events, {}, this, SLOT(noteEvent()));
        call(u"org.a11y.atspi.Registry"_s, u"/org/a11y/atspi/registry"_s, u"org.a11y.atspi.Registry"_s,
             u"RegisterEvent"_s, {events.toLower() + u':'});
    }
    m_connection.connect(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s,
                         u"NameOwnerChanged"_s, this, SLOT(noteEvent()));
}

AccessibleTree::~AccessibleTree()
{
    m_connection = QDBusConnection(QString());
    QDBusConnection::disconnectFromBus(m_connectionName);
}

void AccessibleTree::noteEvent()
{
    // A wait looks again at whatever has come in.
}

QDBusMessage AccessibleTree::call(const QString &bus, const QString &path, const QString &interface,
                                  const QString &method, const QVariantList &arguments) const
{
    QDBusMessage message = QDBusMessage::createMethodCall(bus, path, interface, method);
    message.setArguments(arguments);
    message.setAutoStartService(bus == u"org.a11y.atspi.Registry"_s);
    return m_connection.call(message, QDBus::Block, callTimeoutMilliseconds);
}

QVariant AccessibleTree::property(const QString &bus, const QString &path, const QString &interface,
                                  const QString &name) const
{
    const QDBusMessage reply = call(bus, path, u"org.freedesktop.DBus.Properties"_s, u"Get"_s, {interface, name});
    return reply.arguments().value(0).value<QDBusVariant>().variant();
}

std::vector<Accessible> AccessibleTree::applications() const
{
    return Accessible(this, u"org.a11y.atspi.Registry"_s, u"/org/a11y/atspi/accessible/root"_s).children();
}

Accessible AccessibleTree::application(qint64 pid) const
{
    Accessible empty;
    for (const Accessible &application : applications()) {
        const QDBusMessage reply =
            call(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s,
                 u"GetConnectionUnixProcessID"_s, {application.bus()});
        if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().value(0).toLongLong() != pid)
            continue;
        if (!application.children().empty())
            return application;
        if (empty.isNull())
            empty = application;
    }
    return empty;
}

std::vector<Accessible> AccessibleTree::windows(qint64 pid, const QString &name) const
{
    std::vector<Accessible> found = application(pid).children();
    if (!name.isEmpty())
        std::erase_if(found, [&](const Accessible &window) { return window.name() != name; });
    return found;
}

Accessible AccessibleTree::await(const std::function<Accessible()> &look, const QString &what,
                                 std::chrono::milliseconds deadline)
{
    Accessible found;
    waitUntil([&] { return !(found = look()).isNull(); }, what, deadline);
    return found;
}

Accessible AccessibleTree::await(qint64 pid, const QString &role, const QString &name,
                                 std::chrono::milliseconds deadline)
{
    const auto look = [&] {
        return application(pid).find([&](const Accessible &accessible) {
            return accessible.role() == role && (name.isEmpty() || accessible.name() == name) &&
                   accessible.has(AccessibleState::showing);
        });
    };
    return await(look, u"a %1 '%2' in process %3"_s.arg(role, name).arg(pid), deadline);
}

QString AccessibleTree::awaitReadable(const Accessible &accessible,
                                      const std::function<bool(const QString &)> &condition, const QString &what,
                                      std::chrono::milliseconds deadline)
{
    QString text;
    waitUntil([&] { return condition(text = accessible.readable()); }, what, deadline);
    return text;
}

} // namespace orvesa::desktop
