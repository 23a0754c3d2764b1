#include "desktop/KeyStoreItems.h"

#include "desktop/SecretValue.h"
#include "desktop/Waiting.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusVariant>
#include <QUuid>

namespace orvesa::desktop {

using namespace Qt::StringLiterals;

using Attributes = QMap<QString, QString>;

namespace {

constexpr int callTimeoutMilliseconds = 5'000;
constexpr auto servicePath = "/org/freedesktop/secrets";
constexpr auto defaultCollectionPath = "/org/freedesktop/secrets/aliases/default";

Attributes attributesOf(const QString &service, const QString &account)
{
    Attributes attributes{{u"service"_s, service}};
    if (!account.isEmpty())
        attributes.insert(u"account"_s, account);
    return attributes;
}

} // namespace

KeyStoreItems::KeyStoreItems(const QString &sessionBusAddress)
    : m_connectionName(u"desktop-key-store-"_s + QUuid::createUuid().toString(QUuid::WithoutBraces)),
      m_connection(QDBusConnection::connectToBus(sessionBusAddress, m_connectionName))
{
    qDBusRegisterMetaType<Attributes>();
    qDBusRegisterMetaType<SecretValue>();
}

KeyStoreItems::~KeyStoreItems()
{
    m_connection = QDBusConnection(QString());
    QDBusConnection::disconnectFromBus(m_connectionName);
}

QDBusMessage KeyStoreItems::call(const QString &path, const QString &interface, const QString &method,
                                 const QVariantList &arguments)
{
    QDBusMessage message = QDBusMessage::createMethodCall(u"org.freedesktop.secrets"_s, path,
                                                          u"org.freedesktop.Secret."_s + interface, method);
    message.setArguments(arguments);
    QDBusMessage reply = m_connection.call(message, QDBus::Block, callTimeoutMilliseconds);
    if (reply.type() != QDBusMessage::ReplyMessage)
        throw DesktopError(u"the key store refused %1: %2"_s.arg(method, reply.errorMessage()));
    return reply;
}

QDBusObjectPath KeyStoreItems::session()
{
    if (m_session.path().isEmpty())
        m_session = call(QString::fromLatin1(servicePath), u"Service"_s, u"OpenSession"_s,
                         {u"plain"_s, QVariant::fromValue(QDBusVariant(QString(u""_s)))})
                        .arguments()
                        .value(1)
                        .value<QDBusObjectPath>();
    return m_session;
}

void KeyStoreItems::store(const QString &service, const QString &account, const QByteArray &secret)
{
    QVariantMap properties;
    properties.insert(u"org.freedesktop.Secret.Item.Label"_s, u"%1 %2"_s.arg(service, account));
    properties.insert(u"org.freedesktop.Secret.Item.Attributes"_s, QVariant::fromValue(attributesOf(service, account)));
    const SecretValue value{session(), {}, secret, u"text/plain; charset=utf8"_s};
    const QDBusMessage reply = call(QString::fromLatin1(defaultCollectionPath), u"Collection"_s, u"CreateItem"_s,
                                    {properties, QVariant::fromValue(value), true});
    if (reply.arguments().value(0).value<QDBusObjectPath>().path() == u"/"_s)
        throw DesktopError(u"the key store asks for a password before it stores"_s);
}

QList<QDBusObjectPath> KeyStoreItems::items(const QString &service, const QString &account)
{
    const QDBusMessage reply = call(QString::fromLatin1(servicePath), u"Service"_s, u"SearchItems"_s,
                                    {QVariant::fromValue(attributesOf(service, account))});
    return qdbus_cast<QList<QDBusObjectPath>>(reply.arguments().value(0)) +
           qdbus_cast<QList<QDBusObjectPath>>(reply.arguments().value(1));
}

std::optional<QByteArray> KeyStoreItems::lookup(const QString &service, const QString &account)
{
    const QList<QDBusObjectPath> found = items(service, account);
    if (found.isEmpty())
        return std::nullopt;
    const QDBusMessage reply = call(found.first().path(), u"Item"_s, u"GetSecret"_s, {QVariant::fromValue(session())});
    return qdbus_cast<SecretValue>(reply.arguments().value(0)).value;
}

void KeyStoreItems::remove(const QString &service, const QString &account)
{
    for (const QDBusObjectPath &item : items(service, account))
        call(item.path(), u"Item"_s, u"Delete"_s, {});
}

int KeyStoreItems::count(const QString &service, const QString &account)
{
    return static_cast<int>(items(service, account).size());
}

bool KeyStoreItems::isDefaultCollectionLocked()
{
    QDBusMessage message =
        QDBusMessage::createMethodCall(u"org.freedesktop.secrets"_s, QString::fromLatin1(defaultCollectionPath),
                                       u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    message.setArguments({u"org.freedesktop.Secret.Collection"_s, u"Locked"_s});
    const QDBusMessage reply = m_connection.call(message, QDBus::Block, callTimeoutMilliseconds);
    if (reply.type() != QDBusMessage::ReplyMessage)
        throw DesktopError(u"the key store has no default collection: %1"_s.arg(reply.errorMessage()));
    return reply.arguments().value(0).value<QDBusVariant>().variant().toBool();
}

} // namespace orvesa::desktop
