#pragma once

// An interactive screenshot asked of org.freedesktop.portal.Screenshot. Main thread, with an event loop.

#include <QDBusConnection>
#include <QObject>
#include <QString>
#include <QVariantMap>

namespace orvesa {

class PortalRequest final : public QObject {
    Q_OBJECT

public:
    PortalRequest();

    /// finished() follows, at once where there is no portal.
    void start();

    [[nodiscard]] const QString &uri() const { return m_uri; }         ///< empty when the user cancelled
    [[nodiscard]] const QString &failure() const { return m_failure; } ///< one English line

Q_SIGNALS:
    void finished();

private Q_SLOTS:
    void handleResponse(uint response, const QVariantMap &results);

private:
    void fail(const QString &reason);
    bool listen(const QString &path);

    QDBusConnection m_bus;
    QString m_uri;
    QString m_failure;
};

} // namespace orvesa
