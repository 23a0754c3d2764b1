#include "Platform/FakePortal.h"

#include "Platform/FakePortalSession.h"

#include <QCoreApplication>
#include <QDBusError>
#include <QDBusMessage>
#include <QSocketNotifier>

#include <array>
#include <iostream>
#include <utility>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace orvesa::tests {

namespace {

QString objectPath()
{
    return u"/org/freedesktop/portal/desktop"_s;
}

void say(const QString &line)
{
    std::cout << line.toStdString() << std::endl;
}

} // namespace

FakePortal::FakePortal(QDBusConnection bus) : m_bus(std::move(bus)) {}

FakePortal::~FakePortal() = default;

QString FakePortal::pathFor(const QString &kind, const QString &token) const
{
    QString sender = message().service().mid(1);
    sender.replace(u'.', u'_');
    return u"%1/%2/%3/%4"_s.arg(objectPath(), kind, sender, token);
}

void FakePortal::answer(const QString &request, uint response, const QVariantMap &results)
{
    QDBusMessage signal = QDBusMessage::createSignal(request, u"org.freedesktop.portal.Request"_s, u"Response"_s);
    signal.setArguments({response, results});
    if (m_holds) {
        m_held.append(signal);
    } else {
        m_bus.send(signal);
    }
}

void FakePortal::refuse(const QString &request)
{
    say(u"refuse a path that is taken"_s);
    answer(request, 2, {});
    endSession();
}

void FakePortal::closeSession(const QDBusMessage &call)
{
    if (m_closing == Closing::held) {
        m_heldClosings.append(call);
        return;
    }
    endSession();
    if (m_closing == Closing::answered) {
        m_bus.send(call.createReply());
    }
}

void FakePortal::endSession()
{
    if (m_sessionObject != nullptr) {
        m_bus.unregisterObject(std::exchange(m_session, {}));
        std::exchange(m_sessionObject, nullptr)->deleteLater();
    }
}

void FakePortal::tellClosed(const QString &session)
{
    QDBusMessage signal = QDBusMessage::createSignal(session, u"org.freedesktop.portal.Session"_s, u"Closed"_s);
    signal.setArguments({QVariantMap()});
    m_bus.send(signal);
    say(u"closed"_s);
}

QDBusObjectPath FakePortal::CreateSession(const QVariantMap &options)
{
    const QString request = pathFor(u"request"_s, options.value(u"handle_token"_s).toString());
    const QString path = pathFor(u"session"_s, options.value(u"session_handle_token"_s).toString());
    if (path == m_session) {
        refuse(request);
        return QDBusObjectPath(request);
    }
    m_session = path;
    m_sessionObject = new FakePortalSession(this);
    // Later than what has come in by now: another thread closes it.
    connect(m_sessionObject, &FakePortalSession::closeAsked, this, &FakePortal::closeSession, Qt::QueuedConnection);
    m_bus.registerObject(m_session, m_sessionObject, QDBusConnection::ExportAllSlots);
    say(u"session"_s);
    QVariantMap results{{u"session_handle"_s, m_session}};
    if (m_gift != Gift::nothing) {
        auto shortcuts = qdbus_cast<QList<PortalShortcut>>(options.value(u"shortcuts"_s));
        for (PortalShortcut &shortcut : shortcuts) {
            const QString keys = shortcut.properties.take(u"preferred_trigger"_s).toString();
            say(u"give %1 %2"_s.arg(shortcut.id, keys));
            shortcut.properties.insert(u"trigger_description"_s, m_gift == Gift::shortcuts ? keys : QString());
        }
        results.insert(u"shortcuts"_s, QVariant::fromValue(shortcuts));
    }
    answer(request, m_response, results);
    return QDBusObjectPath(request);
}

QDBusObjectPath FakePortal::BindShortcuts(const QDBusObjectPath &session, const QList<PortalShortcut> &shortcuts,
                                          const QString &parentWindow, const QVariantMap &options)
{
    Q_UNUSED(parentWindow)
    if (session.path() != m_session) {
        say(u"bind in a closed session"_s);
        sendErrorReply(QDBusError::AccessDenied, u"no such session"_s);
        return {};
    }
    QStringList words;
    for (const PortalShortcut &shortcut : shortcuts) {
        words.append(u"%1=%2 (%3)"_s.arg(shortcut.id, shortcut.properties.value(u"preferred_trigger"_s).toString(),
                                         shortcut.properties.value(u"description"_s).toString()));
    }
    say(u"bind "_s + words.join(u", "_s));
    const QString request = pathFor(u"request"_s, options.value(u"handle_token"_s).toString());
    answer(request, m_response, {});
    return QDBusObjectPath(request);
}

void FakePortal::obey(const QString &order)
{
    if (order == "refuse"_L1) {
        m_response = 1;
        say(u"refusing"_s);
        return;
    }
    if (order.startsWith("give"_L1)) {
        m_gift = order == "give"_L1 ? Gift::shortcuts : Gift::shortcutsWithoutKeys;
        say(u"giving"_s);
        return;
    }
    if (order == "hold"_L1) {
        m_holds = true;
        say(u"holding"_s);
        return;
    }
    if (order == "hold closing"_L1 || order == "swallow closing"_L1) {
        m_closing = order == "hold closing"_L1 ? Closing::held : Closing::unanswered;
        say(u"holding"_s);
        return;
    }
    if (order == "go on"_L1) {
        m_holds = false;
        m_closing = Closing::answered;
        for (const QDBusMessage &call : std::exchange(m_heldClosings, {})) {
            closeSession(call);
        }
        for (const QDBusMessage &answer : std::exchange(m_held, {})) {
            m_bus.send(answer);
        }
        return;
    }
    if (order == "lose"_L1) {
        endSession();
        say(u"lost"_s);
        return;
    }
    if (order == "close session"_L1 || order == "close another session"_L1) {
        const QString session = m_session;
        if (order == "close session"_L1) {
            endSession();
        }
        tellClosed(m_session.isEmpty() ? session : session + u"_2"_s);
        return;
    }
    if (m_session.isEmpty()) {
        say(u"nobody to tell"_s);
        return;
    }
    QDBusMessage signal =
        QDBusMessage::createSignal(objectPath(), u"org.freedesktop.portal.GlobalShortcuts"_s, u"Activated"_s);
    signal.setArguments({QVariant::fromValue(QDBusObjectPath(m_session)), order.section(u' ', 1),
                         QVariant::fromValue<qulonglong>(0), QVariantMap()});
    m_bus.send(signal);
}

} // namespace orvesa::tests

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    orvesa::PortalShortcut::registerType();
    QDBusConnection bus = QDBusConnection::sessionBus();
    orvesa::tests::FakePortal portal(bus);
    if (!bus.registerObject(u"/org/freedesktop/portal/desktop"_s, &portal,
                            QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllProperties) ||
        !bus.registerService(u"org.freedesktop.portal.Desktop"_s)) {
        return 1;
    }
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &portal, [&] {
        std::array<char, 1024> bytes{};
        const ssize_t count = ::read(STDIN_FILENO, bytes.data(), bytes.size());
        if (count <= 0) {
            QCoreApplication::quit();
            return;
        }
        const QByteArray orders(bytes.data(), static_cast<qsizetype>(count)); // whole lines, as the test writes them
        for (const QByteArray &order : orders.trimmed().split('\n')) {
            portal.obey(QString::fromUtf8(order));
        }
    });
    std::cout << "ready" << std::endl;
    return QCoreApplication::exec();
}
