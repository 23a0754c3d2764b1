#include "Platform/linux/PortalHotKeys.h"

#include "Platform/PortalHotKeysFixture.h"
#include "Platform/linux/PortalShortcut.h"

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
    PortalHotKeys hotKeys;
    listenTo(hotKeys);
    hotKeys.describe({signature, 1}, u"Translate Selection"_s);
    hotKeys.describe({signature, 2}, u"Polish Selection"_s);
    const HotKeyRegistration first = hotKeys.registerHotKey(keyD, option, {signature, 1});
    EXPECT_EQ(first.status, HotKeyStatus::noErr);
    EXPECT_EQ(
        hotKeys.registerHotKey(keyS, option | shift | CarbonModifier::control | CarbonModifier::command, {signature, 2})
            .status,
        HotKeyStatus::noErr);
    EXPECT_EQ(hotKeys.registerHotKey(keyD, option, {signature, 3}).status, HotKeyStatus::hotKeyExists);
    EXPECT_EQ(hotKeys.registerHotKey(0x34, option, {signature, 4}).status, HotKeyStatus::hotKeyInvalid);
    EXPECT_EQ(portal.readLine(), "session");
    EXPECT_EQ(portal.readLine(), "bind hotkey-1-ALT+d=ALT+d (Translate Selection), "
                                 "hotkey-2-CTRL+ALT+SHIFT+LOGO+s=CTRL+ALT+SHIFT+LOGO+s (Polish Selection)");
    portal.write("press hotkey-2-CTRL+ALT+SHIFT+LOGO+s\n");
    portal.write("press hotkey-9-ALT+d\npress hotkey-2-ALT+s\n");
    portal.write("press hotkey-1-ALT+d\n");
    waitUntil([this] { return m_pressed.size() == 2; }, u"the presses"_s);
    EXPECT_EQ(m_pressed, (std::vector<quint32>{2, 1}));

    // The same set anew is no new question to the user; another set is.
    EXPECT_EQ(hotKeys.unregisterHotKey(first.reference), HotKeyStatus::noErr);
    EXPECT_EQ(hotKeys.unregisterHotKey(first.reference), HotKeyStatus::hotKeyInvalid);
    const HotKeyRegistration again = hotKeys.registerHotKey(keyD, option, {signature, 1});
    desktop::processEventsFor(std::chrono::milliseconds(100));
    EXPECT_EQ(hotKeys.unregisterHotKey(again.reference), HotKeyStatus::noErr);
    EXPECT_EQ(portal.readLine(), "close");
    EXPECT_EQ(portal.readLine(), "session");
    EXPECT_EQ(portal.readLine(), "bind hotkey-2-CTRL+ALT+SHIFT+LOGO+s=CTRL+ALT+SHIFT+LOGO+s (Polish Selection)");
    EXPECT_TRUE(m_log.isEmpty());
}

TEST_F(PortalHotKeysTest, ReadsNoKeymapWhenAShortcutIsPressed)
{
    desktop::Process &portal = startPortal();
    PortalHotKeys hotKeys;
    listenTo(hotKeys);
    EXPECT_EQ(hotKeys.registerHotKey(keyD, option, {signature, 1}).status, HotKeyStatus::noErr);
    EXPECT_EQ(portal.readLine(), "session");
    EXPECT_EQ(portal.readLine(), "bind hotkey-1-ALT+d=ALT+d ()");
    const bool hadKeymaps = qEnvironmentVariableIsSet("XKB_CONFIG_ROOT");
    const QByteArray keymaps = qgetenv("XKB_CONFIG_ROOT");
    qputenv("XKB_CONFIG_ROOT", "/nonexistent"); // whoever reads one now finds none
    EXPECT_TRUE(PortalShortcut::trigger(keyD, option).isEmpty());
    portal.write("press hotkey-1-ALT+d\n");
    waitUntil([this] { return m_pressed.size() == 1; }, u"the press"_s);
    hadKeymaps ? qputenv("XKB_CONFIG_ROOT", keymaps) : qunsetenv("XKB_CONFIG_ROOT");
}

TEST_F(PortalHotKeysTest, TakesKeysThatComeWithTheSession)
{
    desktop::Process &portal = startPortal();
    portal.write("give\n");
    EXPECT_EQ(portal.readLine(), "giving");
    PortalHotKeys hotKeys;
    listenTo(hotKeys);
    const HotKeyRegistration first = hotKeys.registerHotKey(keyD, option, {signature, 1});
    EXPECT_EQ(portal.readLine(), "session");
    EXPECT_EQ(portal.readLine(), "give hotkey-1-ALT+d ALT+d");
    portal.write("press hotkey-1-ALT+d\n");
    waitUntil([this] { return m_pressed.size() == 1; }, u"the press"_s);

    // Other keys are another wish, under a name for which the desktop has none yet; nothing is asked twice.
    EXPECT_EQ(hotKeys.unregisterHotKey(first.reference), HotKeyStatus::noErr);
    EXPECT_EQ(hotKeys.registerHotKey(keyS, option, {signature, 1}).status, HotKeyStatus::noErr);
    EXPECT_EQ(portal.readLine(), "close");
    EXPECT_EQ(portal.readLine(), "session");
    EXPECT_EQ(portal.readLine(), "give hotkey-1-ALT+s ALT+s");
    EXPECT_TRUE(m_log.isEmpty());
}

TEST_F(PortalHotKeysTest, SaysWhenTheDesktopHasNoKeysLeft)
{
    desktop::Process &portal = startPortal();
    portal.write("give nothing\n");
    EXPECT_EQ(portal.readLine(), "giving");
    PortalHotKeys hotKeys;
    EXPECT_EQ(hotKeys.registerHotKey(keyD, option, {signature, 1}).status, HotKeyStatus::noErr);
    waitUntil([this] { return m_log.size() == 1; }, u"the word about it"_s);
    EXPECT_TRUE(m_log.first().contains(u"gave a shortcut no keys"_s)) << m_log.first().toStdString();
}

TEST_F(PortalHotKeysTest, SaysWhenTheUserRefuses)
{
    desktop::Process &portal = startPortal();
    portal.write("refuse\n");
    EXPECT_EQ(portal.readLine(), "refusing");
    PortalHotKeys hotKeys;
    EXPECT_EQ(hotKeys.registerHotKey(keyD, option, {signature, 1}).status, HotKeyStatus::noErr);
    waitUntil([this] { return m_log.size() == 1; }, u"the word about it"_s);
    EXPECT_TRUE(m_log.first().contains(u"refused"_s)) << m_log.first().toStdString();
}

TEST_F(PortalHotKeysTest, SaysOnceWhatToDoWithoutAPortal)
{
    PortalHotKeys hotKeys;
    EXPECT_EQ(hotKeys.installHandler({}), HotKeyStatus::noErr);
    for (const quint32 key : {keyD, keyS}) {
        const HotKeyRegistration registration = hotKeys.registerHotKey(key, option, {signature, key});
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
    PortalHotKeys hotKeys;
    EXPECT_EQ(hotKeys.registerHotKey(keyD, option, {signature, 1}).status, HotKeyStatus::noErr);
    EXPECT_TRUE(m_log.isEmpty());
    waitUntil([this] { return m_log.size() == 1; }, u"the word about it"_s);
    EXPECT_TRUE(m_log.first().contains(u"orvesa-translate --perform translateSelection"_s));
    listenTo(hotKeys);
    expectBoundAt(startPortal(), "bind hotkey-1-ALT+d=ALT+d ()"); // it has come after all
}

TEST(PortalShortcutTest, WritesKeysAsTheDesktopDoes)
{
    constexpr quint32 keyD = 2;
    constexpr quint32 option = CarbonModifier::option;
    constexpr quint32 shift = CarbonModifier::shift;
    EXPECT_EQ(PortalShortcut::trigger(keyD, option), u"ALT+d"_s);
    EXPECT_EQ(PortalShortcut::trigger(96, 0), u"F5"_s);
    EXPECT_EQ(PortalShortcut::trigger(49, CarbonModifier::command), u"LOGO+space"_s);
    EXPECT_EQ(PortalShortcut::trigger(36, CarbonModifier::control | shift), u"CTRL+SHIFT+Return"_s);
    EXPECT_EQ(PortalShortcut::trigger(1000, option), QString());
}

} // namespace
} // namespace orvesa
