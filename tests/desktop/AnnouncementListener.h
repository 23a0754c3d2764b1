#pragma once

// Hears what programs on the private desktop ask screen readers to say.
//
// Main thread. One private connection to the accessibility bus.

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QString>
#include <QStringList>

namespace orvesa::desktop {

class AnnouncementListener final : public QObject {
    Q_OBJECT

public:
    explicit AnnouncementListener(const QString &accessibilityBusAddress);
    ~AnnouncementListener() override;
    Q_DISABLE_COPY_MOVE(AnnouncementListener)

    /// Since the listener was made, oldest first.
    [[nodiscard]] const QStringList &heard() const { return m_heard; }

private Q_SLOTS:
    void note(const QDBusMessage &event);

private:
    QString m_connectionName;
    QDBusConnection m_connection;
    QStringList m_heard;
};

} // namespace orvesa::desktop
