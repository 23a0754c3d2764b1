#pragma once

// Stands in for the desktop's tray and notes when a program's icon is there and answers.
//
// It owns org.kde.StatusNotifierWatcher on a private session bus. An icon that registers is asked for its identifier at
// once; the program's event loop answers that, so the answer tells from outside that the loop runs, whatever the
// program is. No panel stands between whose own speed would be measured too. Main thread.

#include <QDBusConnection>
#include <QDBusContext>
#include <QObject>
#include <QStringList>

#include <chrono>
#include <map>

namespace orvesa::benchmark {

class TrayWatcher final : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ isHostRegistered)
    Q_PROPERTY(int ProtocolVersion READ protocolVersion)
    Q_PROPERTY(QStringList RegisteredStatusNotifierItems READ items)

public:
    /// Throws std::runtime_error when the bus has such an owner already.
    explicit TrayWatcher(const QString &sessionBusAddress);
    ~TrayWatcher() override;

    [[nodiscard]] static bool isHostRegistered() { return true; }
    [[nodiscard]] static int protocolVersion() { return 0; }
    [[nodiscard]] QStringList items() const { return m_items; }

    /// When the process' icon answered, on the monotonic clock in nanoseconds. Waits for it; throws when it does not
    /// come.
    [[nodiscard]] qint64 awaitAnswer(qint64 pid, std::chrono::milliseconds deadline);

public Q_SLOTS:
    // The interface's own name.
    void RegisterStatusNotifierItem(const QString &service); // NOLINT(readability-identifier-naming)

Q_SIGNALS:
    void StatusNotifierItemRegistered(const QString &service);
    void StatusNotifierHostRegistered();

private:
    void noteAnswer(const QString &bus);

    QString m_connectionName;
    QDBusConnection m_connection;
    QStringList m_items;
    std::map<qint64, qint64> m_answers; ///< by process
};

} // namespace orvesa::benchmark
