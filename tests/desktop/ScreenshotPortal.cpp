#include "desktop/ScreenshotPortal.h"

#include "desktop/Waiting.h"

namespace orvesa::desktop {

using namespace Qt::StringLiterals;

namespace {

const QString connectionName = u"screenshot portal"_s;

} // namespace

ScreenshotPortal::ScreenshotPortal(const QString &busAddress)
    : m_bus(QDBusConnection::connectToBus(busAddress, connectionName))
{
    if (!m_bus.registerObject(u"/org/freedesktop/portal/desktop"_s, this, QDBusConnection::ExportAllSlots) ||
        !m_bus.registerService(u"org.freedesktop.portal.Desktop"_s)) {
        throw DesktopError(u"no portal can be offered: "_s + m_bus.lastError().message());
    }
}

ScreenshotPortal::~ScreenshotPortal()
{
    m_bus.unregisterService(u"org.freedesktop.portal.Desktop"_s);
    QDBusConnection::disconnectFromBus(connectionName);
}

QDBusObjectPath ScreenshotPortal::Screenshot(const QString &parentWindow, const QVariantMap &options,
                                             const QDBusMessage &message)
{
    Q_UNUSED(parentWindow)
    ++requests;
    lastOptions = options;
    const QString sender = message.service().sliced(1).replace(u'.', u'_');
    const QString path =
        u"/org/freedesktop/portal/desktop/request/%1/%2"_s.arg(sender, options.value(u"handle_token"_s).toString());
    if (answer) {
        QDBusMessage response = QDBusMessage::createTargetedSignal(message.service(), path,
                                                                   u"org.freedesktop.portal.Request"_s, u"Response"_s);
        response << answer->response << (answer->uri.isEmpty() ? QVariantMap() : QVariantMap{{u"uri"_s, answer->uri}});
        m_bus.send(response);
    }
    return QDBusObjectPath(path);
}

} // namespace orvesa::desktop
