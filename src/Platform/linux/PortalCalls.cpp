#include "Platform/linux/PortalCalls.h"

#include <QDBusConnection>
#include <QDBusError>
#include <QDBusVariant>
#include <QStringList>

namespace orvesa::PortalCalls {

using namespace Qt::StringLiterals;

namespace {

constexpr int boundInMilliseconds = 250;

/// Whether the portal has not started, or has not come to answering, rather than answered that it has no shortcuts.
bool isStillToCome(const QDBusConnection &bus, const QDBusMessage &failure)
{
    const QString error = failure.errorName();
    if (error == QDBusError::errorString(QDBusError::NoReply) ||
        error == QDBusError::errorString(QDBusError::TimedOut)) {
        return true;
    }
    if (error != QDBusError::errorString(QDBusError::ServiceUnknown) &&
        error != "org.freedesktop.DBus.Error.NameHasNoOwner"_L1) {
        return false;
    }
    const QDBusMessage question = QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                                                                 u"org.freedesktop.DBus"_s, u"ListActivatableNames"_s);
    const QDBusMessage answer = bus.call(question, QDBus::Block, boundInMilliseconds);
    return answer.type() == QDBusMessage::ReplyMessage && answer.arguments().value(0).toStringList().contains(service);
}

} // namespace

bool mayHaveShortcuts(const QDBusConnection &bus)
{
    QDBusMessage question =
        QDBusMessage::createMethodCall(service, objectPath, u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    question.setArguments({shortcutsInterface, u"version"_s});
    question.setAutoStartService(false);
    const QDBusMessage answer = bus.call(question, QDBus::Block, boundInMilliseconds);
    // At login the portal may be still to come, or on its way; what it can do shows when it is asked for it.
    return answer.type() == QDBusMessage::ReplyMessage
               ? answer.arguments().value(0).value<QDBusVariant>().variant().toUInt() >= 1
               : isStillToCome(bus, answer);
}

QDBusMessage shortcutsCall(const QString &method, const QVariantList &arguments)
{
    QDBusMessage message = QDBusMessage::createMethodCall(service, objectPath, shortcutsInterface, method);
    message.setArguments(arguments);
    return message;
}

QDBusMessage closingCall(const QString &session)
{
    QDBusMessage message = QDBusMessage::createMethodCall(service, session, sessionInterface, u"Close"_s);
    message.setAutoStartService(false); // a portal that has gone has no session
    return message;
}

QString pathOf(const QDBusConnection &bus, const QString &kind, const QString &token)
{
    QString sender = bus.baseService().mid(1);
    sender.replace(u'.', u'_');
    return u"%1/%2/%3/%4"_s.arg(objectPath, kind, sender, token);
}

} // namespace orvesa::PortalCalls
