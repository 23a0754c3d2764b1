#include "desktop/TrayItems.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QUuid>

#include <algorithm>

namespace orvesa::desktop {

using namespace Qt::StringLiterals;

namespace {

constexpr int callTimeoutMilliseconds = 2'000;
constexpr auto watcherService = "org.kde.StatusNotifierWatcher";
constexpr auto itemInterface = "org.kde.StatusNotifierItem";
constexpr auto menuInterface = "com.canonical.dbusmenu";

QString latin(const char *text)
{
    return QString::fromLatin1(text);
}

/// A label with its mnemonics resolved: "_Quit" is "Quit", "a__b" is "a_b".
QString withoutMnemonics(const QString &label)
{
    QString text;
    for (qsizetype index = 0; index < label.size(); ++index) {
        if (label[index] == u'_' && index + 1 < label.size())
            ++index;
        text += label[index];
    }
    return text;
}

TrayMenuEntry readEntry(const QDBusArgument &argument)
{
    TrayMenuEntry entry;
    QVariantMap properties;
    argument.beginStructure();
    argument >> entry.id >> properties;
    argument.beginArray();
    while (!argument.atEnd()) {
        QDBusVariant child;
        argument >> child;
        entry.entries.push_back(readEntry(child.variant().value<QDBusArgument>()));
    }
    argument.endArray();
    argument.endStructure();
    entry.text = withoutMnemonics(properties.value(u"label"_s).toString());
    entry.enabled = properties.value(u"enabled"_s, true).toBool();
    entry.visible = properties.value(u"visible"_s, true).toBool();
    entry.separator = properties.value(u"type"_s).toString() == u"separator"_s;
    return entry;
}

const TrayMenuEntry *entryWithText(const std::vector<TrayMenuEntry> &entries, const QString &text)
{
    for (const TrayMenuEntry &entry : entries) {
        if (entry.text == text && entry.visible && entry.enabled)
            return &entry;
        if (const TrayMenuEntry *found = entryWithText(entry.entries, text))
            return found;
    }
    return nullptr;
}

} // namespace

TrayItems::TrayItems(const QString &sessionBusAddress)
    : m_connectionName(u"desktop-tray-"_s + QUuid::createUuid().toString(QUuid::WithoutBraces)),
      m_connection(QDBusConnection::connectToBus(sessionBusAddress, m_connectionName))
{
    // Any signal of the watcher, the items or their menus may be what a wait is for.
    m_connection.connect({}, {}, latin(watcherService), {}, this, SLOT(noteChange()));
    m_connection.connect({}, {}, latin(itemInterface), {}, this, SLOT(noteChange()));
    m_connection.connect({}, {}, latin(menuInterface), {}, this, SLOT(noteChange()));
}

TrayItems::~TrayItems()
{
    m_connection = QDBusConnection(QString());
    QDBusConnection::disconnectFromBus(m_connectionName);
}

void TrayItems::noteChange()
{
    // Its arrival alone wakes the wait.
}

QDBusMessage TrayItems::call(const QString &bus, const QString &path, const QString &interface, const QString &method,
                             const QVariantList &arguments) const
{
    QDBusMessage message = QDBusMessage::createMethodCall(bus, path, interface, method);
    message.setArguments(arguments);
    message.setAutoStartService(false);
    return m_connection.call(message, QDBus::Block, callTimeoutMilliseconds);
}

QVariant TrayItems::property(const QString &bus, const QString &path, const QString &interface,
                             const QString &name) const
{
    return call(bus, path, u"org.freedesktop.DBus.Properties"_s, u"Get"_s, {interface, name})
        .arguments()
        .value(0)
        .value<QDBusVariant>()
        .variant();
}

std::vector<TrayItem> TrayItems::items() const
{
    std::vector<TrayItem> found;
    const QStringList registered = property(latin(watcherService), u"/StatusNotifierWatcher"_s, latin(watcherService),
                                            u"RegisteredStatusNotifierItems"_s)
                                       .toStringList();
    for (const QString &entry : registered) {
        const qsizetype slash = entry.indexOf(u'/');
        TrayItem item;
        item.bus = slash < 0 ? entry : entry.left(slash);
        if (item.bus.endsWith(u'@')) // as GNOME's extension writes it
            item.bus.chop(1);
        item.path = slash < 0 ? u"/StatusNotifierItem"_s : entry.mid(slash);
        item.id = property(item.bus, item.path, latin(itemInterface), u"Id"_s).toString();
        item.title = property(item.bus, item.path, latin(itemInterface), u"Title"_s).toString();
        item.menuPath = property(item.bus, item.path, latin(itemInterface), u"Menu"_s).value<QDBusObjectPath>().path();
        item.pid = call(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s,
                        u"GetConnectionUnixProcessID"_s, {item.bus})
                       .arguments()
                       .value(0)
                       .toLongLong();
        found.push_back(item);
    }
    return found;
}

TrayItem TrayItems::awaitItem(qint64 pid, std::chrono::milliseconds deadline)
{
    TrayItem found;
    const auto look = [&] {
        const std::vector<TrayItem> all = items();
        const auto item = std::ranges::find(all, pid, &TrayItem::pid);
        if (item == all.end())
            return false;
        found = *item;
        return true;
    };
    waitUntil(look, u"a tray item of process %1"_s.arg(pid), deadline);
    return found;
}

void TrayItems::awaitNoItem(qint64 pid, std::chrono::milliseconds deadline)
{
    waitUntil([&] { return std::ranges::none_of(items(), [&](const TrayItem &item) { return item.pid == pid; }); },
              u"the tray item to go"_s, deadline);
}

std::vector<TrayMenuEntry> TrayItems::menu(const TrayItem &item)
{
    call(item.bus, item.menuPath, latin(menuInterface), u"AboutToShow"_s, {0});
    const QDBusMessage reply =
        call(item.bus, item.menuPath, latin(menuInterface), u"GetLayout"_s, {0, -1, QStringList()});
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().size() != 2)
        throw DesktopError(u"the tray item's menu cannot be read: %1"_s.arg(reply.errorMessage()));
    return readEntry(reply.arguments().at(1).value<QDBusArgument>()).entries;
}

QStringList TrayItems::menuTexts(const TrayItem &item)
{
    QStringList texts;
    for (const TrayMenuEntry &entry : menu(item))
        if (!entry.separator && entry.visible)
            texts.append(entry.text);
    return texts;
}

void TrayItems::click(const TrayItem &item, const QString &text)
{
    const std::vector<TrayMenuEntry> entries = menu(item);
    const TrayMenuEntry *entry = entryWithText(entries, text);
    if (entry == nullptr)
        throw DesktopError(u"the tray menu has no entry '%1' that can be clicked"_s.arg(text));
    call(item.bus, item.menuPath, latin(menuInterface), u"Event"_s,
         {entry->id, u"clicked"_s, QVariant::fromValue(QDBusVariant(0)), quint32{0}});
}

} // namespace orvesa::desktop
