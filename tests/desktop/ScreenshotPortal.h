#pragma once

// A screenshot portal on a private session bus that answers as a test says.
//
// Main thread. It owns the portal's name as long as it lives.

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QObject>
#include <QString>
#include <QVariantMap>

#include <optional>

namespace orvesa::desktop {

class ScreenshotPortal final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Screenshot")

public:
    struct Answer {
        uint response = 0; ///< 0 granted, 1 cancelled by the user, 2 ended otherwise
        QString uri;
    };

    /// Throws DesktopError when the bus cannot be reached or the name is taken.
    explicit ScreenshotPortal(const QString &busAddress);
    ~ScreenshotPortal() override;

    std::optional<Answer> answer; ///< none: the user never comes to an end
    QVariantMap lastOptions;
    int requests = 0;

public Q_SLOTS:
    QDBusObjectPath Screenshot(const QString &parentWindow, const QVariantMap &options, const QDBusMessage &message);

private:
    QDBusConnection m_bus;
};

} // namespace orvesa::desktop
