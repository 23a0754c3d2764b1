#include "Platform/FakePortal.h"

#include "Platform/FakePortalSession.h"

#include <QCoreApplication>
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

void FakePortal::answer(const QString &request, const QVariantMap &results)
{
    QDBusMessage signal = QDBusMessage::createSignal(request, u"org.freedesktop.portal.Request"_s, u"Response"_s);
    signal.setArguments({m_response, results});
    if (m_holds) {
        m_held.append(signal);
    } else {
        m_bus.send(signal);
    }
}

QDBusObjectPath FakePortal::CreateSession(const QVariantMap &options)
{
    m_session = pathFor(u"session"_s, options.value(u"session_handle_token"_s).toString());
    m_bus.registerObject(m_session, new FakePortalSession(this), QDBusConnection::ExportAllSlots);
    say(u"session"_s);
    const QString request = pathFor(u"request"_s, options.value(u"handle_token"_s).toString());
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
    answer(request, results);
    return QDBusObjectPath(request);
}

QDBusObjectPath FakePortal::BindShortcuts(const QDBusObjectPath &session, const QList<PortalShortcut> &shortcuts,
                                          const QString &parentWindow, const QVariantMap &options)
{
    Q_UNUSED(parentWindow)
    QStringList words;
    for (const PortalShortcut &shortcut : shortcuts) {
        words.append(u"%1=%2 (%3)"_s.arg(shortcut.id, shortcut.properties.value(u"preferred_trigger"_s).toString(),
                                         shortcut.properties.value(u"description"_s).toString()));
    }
    say((session.path() == m_session ? u"bind "_s : u"bind in another session "_s) + words.join(u", "_s));
    const QString request = pathFor(u"request"_s, options.value(u"handle_token"_s).toString());
    answer(request, {});
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
    if (order == "go on"_L1) {
        m_holds = false;
        for (const QDBusMessage &answer : std::exchange(m_held, {})) {
            m_bus.send(answer);
        }
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
