#pragma once

// The items in the desktop's tray: StatusNotifierItems with their menus, and the icon windows of an embedding tray.
//
// Main thread. One private connection to the session bus; waits are driven by the watcher's and the menus' signals.

#include "desktop/Waiting.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariantList>

#include <chrono>
#include <vector>

namespace orvesa::desktop {

struct TrayItem {
    QString bus;
    QString path;
    QString id;
    QString title;
    QString menuPath;
    qint64 pid = 0;
};

struct TrayMenuEntry {
    int id = 0;
    QString text; ///< without mnemonics' underscores
    bool enabled = true;
    bool visible = true;
    bool separator = false;
    std::vector<TrayMenuEntry> entries;
};

class TrayItems final : public QObject {
    Q_OBJECT

public:
    explicit TrayItems(const QString &sessionBusAddress);
    ~TrayItems() override;

    [[nodiscard]] std::vector<TrayItem> items() const;
    /// The item of that process, once it is there. Throws DeadlineError.
    TrayItem awaitItem(qint64 pid, std::chrono::milliseconds deadline = usualDeadline);
    void awaitNoItem(qint64 pid, std::chrono::milliseconds deadline = usualDeadline);
    /// Opens the item's menu and reads it.
    [[nodiscard]] std::vector<TrayMenuEntry> menu(const TrayItem &item);
    [[nodiscard]] QStringList menuTexts(const TrayItem &item);
    /// Clicks the menu entry with exactly this text. Throws DesktopError when there is none that is enabled.
    void click(const TrayItem &item, const QString &text);

private Q_SLOTS:
    void noteChange();

private:
    QDBusMessage call(const QString &bus, const QString &path, const QString &interface, const QString &method,
                      const QVariantList &arguments = {}) const;
    [[nodiscard]] QVariant property(const QString &bus, const QString &path, const QString &interface,
                                    const QString &name) const;

    QString m_connectionName;
    QDBusConnection m_connection;
};

} // namespace orvesa::desktop
