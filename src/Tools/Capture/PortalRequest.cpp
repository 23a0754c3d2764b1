#include "Tools/Capture/PortalRequest.h"

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QUuid>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

const QString service = u"org.freedesktop.portal.Desktop"_s;
const QString requestInterface = u"org.freedesktop.portal.Request"_s;
constexpr int answerMilliseconds = 5'000; // to the call alone; the user may take longer

} // namespace

PortalRequest::PortalRequest() : m_bus(QDBusConnection::sessionBus()) {}

bool PortalRequest::listen(const QString &path)
{
    return m_bus.connect(service, path, requestInterface, u"Response"_s, this, SLOT(handleResponse(uint, QVariantMap)));
}

void PortalRequest::start()
{
    if (!m_bus.isConnected()) {
        fail(u"there is no session bus to reach the screenshot portal on"_s);
        return;
    }
    // The answer can be faster than the call's own reply: it is listened for first, at the path that the token makes.
    const QString token = u"orvesa"_s + QUuid::createUuid().toString(QUuid::Id128);
    const QString sender = m_bus.baseService().sliced(1).replace(u'.', u'_');
    const QString expected = u"/org/freedesktop/portal/desktop/request/%1/%2"_s.arg(sender, token);
    listen(expected);
    QDBusMessage call = QDBusMessage::createMethodCall(service, u"/org/freedesktop/portal/desktop"_s,
                                                       u"org.freedesktop.portal.Screenshot"_s, u"Screenshot"_s);
    call << QString() << QVariantMap{{u"handle_token"_s, token}, {u"interactive"_s, true}, {u"modal"_s, true}};
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call, answerMilliseconds), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, expected] {
        watcher->deleteLater();
        const QDBusPendingReply<QDBusObjectPath> reply = *watcher;
        if (reply.isError()) {
            fail(u"the screenshot portal cannot be used: "_s + reply.error().message());
        } else if (reply.value().path() != expected) {
            listen(reply.value().path());
        }
    });
}

void PortalRequest::handleResponse(uint response, const QVariantMap &results)
{
    constexpr uint granted = 0;
    constexpr uint cancelled = 1;
    if (response == granted) {
        m_uri = results.value(u"uri"_s).toString();
    } else if (response != cancelled) {
        m_failure = u"the screenshot portal ended without a picture"_s;
    }
    Q_EMIT finished();
}

void PortalRequest::fail(const QString &reason)
{
    m_failure = reason;
    Q_EMIT finished();
}

} // namespace orvesa
