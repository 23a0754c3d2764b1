#include "Platform/linux/DBusSingleInstance.h"

#include "Platform/linux/DBusApplicationObject.h"
#include "Platform/linux/DBusDiagnosticsObject.h"
#include "Platform/linux/SessionBus.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusReply>

#include <utility>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

constexpr int boundInMilliseconds = 2000;
constexpr quint32 doNotQueue = 4;
constexpr quint32 primaryOwner = 1;
constexpr quint32 alreadyOwner = 4;

QString objectPath(const QString &identifier)
{
    QString path = u'/' + identifier;
    path.replace(u'.', u'/');
    path.replace(u'-', u'_');
    return path;
}

QString diagnosticsPath(const QString &identifier)
{
    return objectPath(identifier) + u"/Diagnostics"_s;
}

QDBusMessage busCall(const QString &method, const QVariantList &arguments)
{
    QDBusMessage message = QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                                                          u"org.freedesktop.DBus"_s, method);
    message.setArguments(arguments);
    return message;
}

} // namespace

DBusSingleInstance::DBusSingleInstance() = default;

DBusSingleInstance::~DBusSingleInstance()
{
    release();
}

SingleInstancePort::Claim DBusSingleInstance::claim(const QString &identifier, Handlers handlers)
{
    release();
    auto bus = SessionBus::connection();
    if (!bus) {
        return Claim::unavailable;
    }
    // The object is there before the name is, so that no caller of the name misses it.
    auto diagnostics = std::make_unique<DBusDiagnosticsObject>(std::move(handlers.heldShortcuts));
    auto object = std::make_unique<DBusApplicationObject>(std::move(handlers));
    if (!bus->registerObject(objectPath(identifier), object.get(), QDBusConnection::ExportAllSlots)) {
        return Claim::unavailable;
    }
    const QDBusReply<quint32> answer = bus->call(
        busCall(u"RequestName"_s, {identifier, QVariant::fromValue(doNotQueue)}), QDBus::Block, boundInMilliseconds);
    if (answer.isValid() && (answer.value() == primaryOwner || answer.value() == alreadyOwner)) {
        m_identifier = identifier;
        m_object = std::move(object);
        qDBusRegisterMetaType<QList<uint>>();
        if (bus->registerObject(diagnosticsPath(identifier), diagnostics.get(), QDBusConnection::ExportAllSlots)) {
            m_diagnostics = std::move(diagnostics);
        }
        return Claim::owned;
    }
    bus->unregisterObject(objectPath(identifier));
    return answer.isValid() ? Claim::runsAlready : Claim::unavailable;
}

bool DBusSingleInstance::ask(const QString &identifier, const QString &action)
{
    auto bus = SessionBus::connection();
    if (!bus) {
        return false;
    }
    QDBusMessage message =
        QDBusMessage::createMethodCall(identifier, objectPath(identifier), u"org.freedesktop.Application"_s,
                                       action.isEmpty() ? u"Activate"_s : u"ActivateAction"_s);
    if (action.isEmpty()) {
        message.setArguments({QVariantMap()});
    } else {
        message.setArguments({action, QVariant(QVariantList()), QVariantMap()});
    }
    message.setAutoStartService(false);
    return bus->call(message, QDBus::Block, boundInMilliseconds).type() == QDBusMessage::ReplyMessage;
}

std::optional<QList<quint32>> DBusSingleInstance::heldShortcuts(const QString &identifier)
{
    auto bus = SessionBus::connection();
    if (!bus) {
        return std::nullopt;
    }
    QDBusMessage message = QDBusMessage::createMethodCall(identifier, diagnosticsPath(identifier),
                                                          u"com.orvesa.Diagnostics1"_s, u"HeldShortcuts"_s);
    message.setAutoStartService(false);
    qDBusRegisterMetaType<QList<uint>>();
    const QDBusReply<QList<uint>> answer = bus->call(message, QDBus::Block, boundInMilliseconds);
    return answer.isValid() ? std::optional(answer.value()) : std::nullopt;
}

void DBusSingleInstance::release()
{
    if (!m_object) {
        return;
    }
    if (auto bus = SessionBus::connection()) {
        bus->send(busCall(u"ReleaseName"_s, {m_identifier}));
        bus->unregisterObject(diagnosticsPath(m_identifier));
        bus->unregisterObject(objectPath(m_identifier));
    }
    m_diagnostics.reset();
    m_object.reset();
}

} // namespace orvesa
