#pragma once

// A small reader of the desktop's accessibility bus: what a screen reader would see of the programs on it.
//
// Main thread. The tree owns one private connection to the accessibility bus. Each call is bounded by two seconds.
// Waits are driven by the bus's object, window and focus events.

#include "desktop/Accessible.h"
#include "desktop/DesktopOptions.h"
#include "desktop/Waiting.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QString>
#include <QVariantList>

#include <chrono>
#include <functional>
#include <vector>

namespace orvesa::desktop {

class AccessibleTree final : public QObject {
    Q_OBJECT

public:
    /// Connects to the accessibility bus at `address`, and registers for its events where it is to listen.
    AccessibleTree(const QString &address, Listening listening);
    ~AccessibleTree() override;

    [[nodiscard]] std::vector<Accessible> applications() const;
    /// The application with that process id; null when it is not on the bus. A process can be there twice, since each
    /// of its toolkits comes for itself: the one with windows counts.
    [[nodiscard]] Accessible application(qint64 pid) const;
    /// Top-level windows of that process; with a title only those whose name is exactly it.
    [[nodiscard]] std::vector<Accessible> windows(qint64 pid, const QString &name = {}) const;

    /// Waits until `look` gives an object, and gives it. Throws DeadlineError with `what`.
    Accessible await(const std::function<Accessible()> &look, const QString &what,
                     std::chrono::milliseconds deadline = usualDeadline);
    /// A showing object anywhere in that process' windows.
    Accessible await(qint64 pid, const QString &role, const QString &name = {},
                     std::chrono::milliseconds deadline = usualDeadline);
    /// Until an object's readable text satisfies the condition; gives the text.
    QString awaitReadable(const Accessible &accessible, const std::function<bool(const QString &)> &condition,
                          const QString &what, std::chrono::milliseconds deadline = usualDeadline);

    QDBusMessage call(const QString &bus, const QString &path, const QString &interface, const QString &method,
                      const QVariantList &arguments = {}) const;
    [[nodiscard]] QVariant property(const QString &bus, const QString &path, const QString &interface,
                                    const QString &name) const;

private Q_SLOTS:
    void noteEvent();

private:
    QString m_connectionName;
    QDBusConnection m_connection;
};

} // namespace orvesa::desktop
