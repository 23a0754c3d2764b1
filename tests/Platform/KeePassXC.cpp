#include "Platform/KeePassXC.h"

#include <QDBusVariant>
#include <QTimer>

namespace orvesa::tests {

using namespace Qt::StringLiterals;

namespace {

constexpr auto password = "a password for tests";
const QString secretsName = u"org.freedesktop.secrets"_s;
const QString databaseName = u"home/secrets.kdbx"_s;

/// An export with one group, which other programs may use.
constexpr auto database = R"(<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<KeePassFile>
 <Meta>
  <DatabaseName>Secrets</DatabaseName>
  <CustomData>
   <Item><Key>FDO_SECRETS_EXPOSED_GROUP</Key><Value>{00112233-4455-6677-8899-aabbccddeeff}</Value></Item>
  </CustomData>
 </Meta>
 <Root><Group><UUID>ABEiM0RVZneImaq7zN3u/w==</UUID><Name>Secrets</Name></Group></Root>
</KeePassFile>
)";

QByteArray configuration(KeePassXC::Questions questions)
{
    const QByteArray unlocks = questions == KeePassXC::Questions::unlockBeforeSearch ? "true" : "false";
    return "[General]\nConfigVersion=2\nUpdateCheckMessageShown=true\n"
           "[GUI]\nCheckForUpdates=false\n"
           "[FdoSecrets]\nEnabled=true\nConfirmAccessItem=false\nConfirmDeleteItem=false\nShowNotification=false\n"
           "UnlockBeforeSearch=" +
           unlocks + '\n';
}

} // namespace

KeePassXC::KeePassXC(desktop::Desktop &desktop, Questions questions)
    : m_desktop(desktop), m_bus(desktop.sessionBusAddress()),
      m_settings(desktop.folders().write(u"home/keepassxc.ini"_s, configuration(questions)))
{
    makeDatabase();
    desktop::Process &process =
        m_desktop.launch(u"keepassxc"_s, {u"--config"_s, m_settings, u"--localconfig"_s, m_settings + u".local"_s,
                                          u"--pw-stdin"_s, m_desktop.folders().top() + u'/' + databaseName});
    process.write(QByteArray(password) + '\n');
    process.closeInput();
    m_bus.awaitOwner(secretsName);
    // It has its name before its database is open.
    QTimer look;
    look.start(std::chrono::milliseconds(5));
    desktop::waitUntil([this] { return isUnlocked(); }, u"the database to be unlocked"_s);
}

bool KeePassXC::isUnlocked()
{
    try {
        const auto reply =
            m_bus.call(secretsName, u"/org/freedesktop/secrets/aliases/default"_s, u"org.freedesktop.DBus.Properties"_s,
                       u"Get"_s, {u"org.freedesktop.Secret.Collection"_s, u"Locked"_s});
        return !reply.arguments().value(0).value<QDBusVariant>().variant().toBool();
    } catch (const desktop::DesktopError &) {
        return false; // there is no such collection
    }
}

void KeePassXC::makeDatabase()
{
    const QString source = m_desktop.folders().write(u"home/secrets.xml"_s, database);
    const QByteArray twice = QByteArray(password) + '\n' + password + '\n';
    const auto imported = m_desktop.runToEnd(
        u"keepassxc-cli"_s, {u"import"_s, u"-p"_s, source, m_desktop.folders().top() + u'/' + databaseName}, {}, twice);
    if (imported.exitCode != 0) {
        throw desktop::DesktopError(u"no database: %1"_s.arg(QString::fromUtf8(imported.standardError)));
    }
}

void KeePassXC::lock()
{
    const auto asked = m_desktop.runToEnd(
        u"keepassxc"_s, {u"--config"_s, m_settings, u"--localconfig"_s, m_settings + u".local"_s, u"--lock"_s});
    if (asked.exitCode != 0) {
        throw desktop::DesktopError(u"not locked: %1"_s.arg(QString::fromUtf8(asked.standardError)));
    }
    QTimer look;
    look.start(std::chrono::milliseconds(5));
    desktop::waitUntil([this] { return !isUnlocked(); }, u"the database to be locked"_s);
}

} // namespace orvesa::tests
