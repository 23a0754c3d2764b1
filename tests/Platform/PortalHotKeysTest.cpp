#include "Platform/linux/PortalHotKeys.h"

#include "Platform/PortalHotKeysFixture.h"

#include <gtest/gtest.h>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDir>
#include <QFile>

namespace orvesa {

using namespace Qt::StringLiterals;
using desktop::waitUntil;

namespace {

class PortalHotKeysTest : public tests::PortalHotKeysFixture {};

TEST_F(PortalHotKeysTest, BindsWhatIsRegisteredInOneGoAndHearsOfPresses)
{
    desktop::Process &portal = startPortal();
    m_hotKeys.describe({signature, 1}, u"Translate Selection"_s);
    m_hotKeys.describe({signature, 2}, u"Polish Selection"_s);
    const HotKeyRegistration first = registerKey(m_hotKeys, keyD, 1);
    EXPECT_EQ(
        m_hotKeys
            .registerHotKey(keyS, option | shift | CarbonModifier::control | CarbonModifier::command, {signature, 2})
            .status,
        HotKeyStatus::noErr);
    EXPECT_EQ(m_hotKeys.registerHotKey(keyD, option, {signature, 3}).status, HotKeyStatus::hotKeyExists);
    m_hotKeys.labelKey({signature, 4}, u"D"_s);
    EXPECT_EQ(m_hotKeys.registerHotKey(12, option, {signature, 4}).status, HotKeyStatus::hotKeyExists)
        << "the same face";
    EXPECT_EQ(m_hotKeys.registerHotKey(0x34, option, {signature, 4}).status, HotKeyStatus::hotKeyInvalid);
    expectBound(portal, "hotkey-1-ALT+d=ALT+d (Translate Selection), "
                        "hotkey-2-CTRL+ALT+SHIFT+LOGO+s=CTRL+ALT+SHIFT+LOGO+s (Polish Selection)");
    portal.write("press hotkey-2-CTRL+ALT+SHIFT+LOGO+s\n");
    portal.write("press hotkey-9-ALT+d\npress hotkey-2-ALT+s\n");
    portal.write("press hotkey-1-ALT+d\n");
    waitUntil([this] { return m_pressed.size() == 2; }, u"the presses"_s);
    EXPECT_EQ(m_pressed, (std::vector<quint32>{2, 1}));

    // The same set anew is no new question to the user; another set is.
    EXPECT_EQ(m_hotKeys.unregisterHotKey(first.reference), HotKeyStatus::noErr);
    EXPECT_EQ(m_hotKeys.unregisterHotKey(first.reference), HotKeyStatus::hotKeyInvalid);
    const HotKeyRegistration again = registerKey(m_hotKeys, keyD, 1);
    desktop::processEventsFor(std::chrono::milliseconds(100));
    EXPECT_EQ(m_hotKeys.unregisterHotKey(again.reference), HotKeyStatus::noErr);
    EXPECT_EQ(portal.readLine(), "close");
    expectBound(portal, "hotkey-2-CTRL+ALT+SHIFT+LOGO+s=CTRL+ALT+SHIFT+LOGO+s (Polish Selection)");
    EXPECT_TRUE(m_log.isEmpty());
}

TEST_F(PortalHotKeysTest, ReadsNoKeymapWhenAShortcutIsPressed)
{
    desktop::Process &portal = startPortal();
    X11Connection noServer("nowhere");
    PortalHotKeys hotKeys(noServer);
    listenTo(hotKeys);
    (void)registerKey(hotKeys, keyD, 1);
    expectBound(portal, "hotkey-1-ALT+d=ALT+d ()");
    const bool hadKeymaps = qEnvironmentVariableIsSet("XKB_CONFIG_ROOT");
    const QByteArray keymaps = qgetenv("XKB_CONFIG_ROOT");
    qputenv("XKB_CONFIG_ROOT", "/nonexistent"); // whoever reads one now finds none
    EXPECT_EQ(hotKeys.registerHotKey(keyS, option, {signature, 2}).status, HotKeyStatus::hotKeyInvalid);
    press(portal, "hotkey-1-ALT+d");
    hadKeymaps ? qputenv("XKB_CONFIG_ROOT", keymaps) : qunsetenv("XKB_CONFIG_ROOT");
}

TEST_F(PortalHotKeysTest, TakesKeysThatComeWithTheSession)
{
    desktop::Process &portal = startPortal("give");
    const HotKeyRegistration first = registerKey(m_hotKeys, keyD, 1);
    EXPECT_EQ(portal.readLine(), "session");
    EXPECT_EQ(portal.readLine(), "give hotkey-1-ALT+d ALT+d");
    press(portal, "hotkey-1-ALT+d");

    // Other keys are another wish, under a name for which the desktop has none yet; nothing is asked twice.
    EXPECT_EQ(m_hotKeys.unregisterHotKey(first.reference), HotKeyStatus::noErr);
    (void)registerKey(m_hotKeys, keyS, 1);
    EXPECT_EQ(portal.readLine(), "close");
    EXPECT_EQ(portal.readLine(), "session");
    EXPECT_EQ(portal.readLine(), "give hotkey-1-ALT+s ALT+s");
    EXPECT_TRUE(m_log.isEmpty());
}

TEST_F(PortalHotKeysTest, SaysWhenTheDesktopHasNoKeysLeft)
{
    (void)startPortal("give nothing");
    (void)registerKey(m_hotKeys, keyD, 1);
    waitUntil([this] { return m_log.size() == 1; }, u"the word about it"_s);
    EXPECT_TRUE(m_log.first().contains(u"gave a shortcut no keys"_s)) << m_log.first().toStdString();
}

TEST_F(PortalHotKeysTest, SaysWhenTheUserRefuses)
{
    (void)startPortal("refuse");
    (void)registerKey(m_hotKeys, keyD, 1);
    waitUntil([this] { return m_log.size() == 1; }, u"the word about it"_s);
    EXPECT_TRUE(m_log.first().contains(u"refused"_s)) << m_log.first().toStdString();
}

TEST_F(PortalHotKeysTest, SaysOnceWhatToDoWithoutAPortal)
{
    EXPECT_EQ(m_hotKeys.installHandler({}), HotKeyStatus::noErr);
    for (const quint32 key : {keyD, keyS}) {
        const HotKeyRegistration registration = m_hotKeys.registerHotKey(key, option, {signature, key});
        EXPECT_EQ(registration.status, HotKeyStatus::notAvailable);
        EXPECT_EQ(registration.reference, 0U);
    }
    ASSERT_EQ(m_log.size(), 1);
    EXPECT_TRUE(m_log.first().contains(u"orvesa-translate --perform translateSelection"_s));
}

TEST_F(PortalHotKeysTest, AsksAPortalThatIsStillToComeAndSaysWhenItDoesNot)
{
    const QDir services(qEnvironmentVariable("HOME") + u"/../bus-services"_s);
    ASSERT_TRUE(services.exists());
    QFile service(services.filePath(u"org.freedesktop.portal.Desktop.service"_s));
    ASSERT_TRUE(service.open(QIODevice::WriteOnly));
    service.write("[D-BUS Service]\nName=org.freedesktop.portal.Desktop\nExec=/bin/false\n");
    service.close();
    QDBusConnection::sessionBus().call(QDBusMessage::createMethodCall(
        u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s, u"ReloadConfig"_s));
    (void)registerKey(m_hotKeys, keyD, 1);
    EXPECT_TRUE(m_log.isEmpty());
    waitUntil([this] { return m_log.size() == 1; }, u"the word about it"_s);
    EXPECT_TRUE(m_log.first().contains(u"orvesa-translate --perform translateSelection"_s));
    expectBoundAt(startPortal(), "hotkey-1-ALT+d=ALT+d ()"); // it has come after all
}

TEST_F(PortalHotKeysTest, AsksForTheKeyWithTheFaceThatIsShown)
{
    ASSERT_EQ(m_desktop->runToEnd(u"setxkbmap"_s, {u"de"_s}).exitCode, 0);
    desktop::Process &portal = startPortal();
    m_hotKeys.labelKey({signature, 1}, u"Z"_s);
    (void)registerKey(m_hotKeys, 16, 1);
    expectBound(portal, "hotkey-1-ALT+z=ALT+z ()");
    press(portal, "hotkey-1-ALT+z");
}

TEST_F(PortalHotKeysTest, BindsAnewWhenTheKeysTypeOtherThings)
{
    desktop::Process &portal = startPortal();
    m_hotKeys.labelKey({signature, 1}, u"D"_s);
    m_hotKeys.labelKey({signature, 2}, u"&"_s);
    (void)registerKey(m_hotKeys, keyD, 1);
    (void)registerKey(m_hotKeys, 18, 2);
    expectBound(portal, "hotkey-1-ALT+d=ALT+d (), hotkey-2-ALT+1=ALT+1 ()");
    ASSERT_EQ(m_desktop->runToEnd(u"setxkbmap"_s, {u"fr"_s}).exitCode, 0);
    EXPECT_EQ(portal.readLine(), "close");
    expectBound(portal, "hotkey-1-ALT+d=ALT+d (), hotkey-2-ALT+ampersand=ALT+ampersand ()");

    // A keymap without the face says nothing about the user's.
    ASSERT_EQ(m_desktop->runToEnd(u"setxkbmap"_s, {u"us"_s}).exitCode, 0);
    desktop::processEventsFor(std::chrono::milliseconds(1300));
    press(portal, "hotkey-2-ALT+ampersand");
    EXPECT_TRUE(m_log.isEmpty());
}

} // namespace
} // namespace orvesa
