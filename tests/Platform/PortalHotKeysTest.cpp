#include "Platform/linux/PortalHotKeys.h"

#include "Platform/AdoptedDesktop.h"
#include "Platform/ModifierBits.h"
#include "Platform/linux/PortalShortcut.h"

#include <gtest/gtest.h>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>

#include <vector>

namespace orvesa {

using namespace Qt::StringLiterals;
using desktop::waitUntil;
using tests::AdoptedDesktop;

namespace {

constexpr quint32 keyD = 2;
constexpr quint32 keyS = 1;
constexpr quint32 option = CarbonModifier::option;
constexpr quint32 shift = CarbonModifier::shift;
constexpr quint32 signature = 0x4B56484B;

desktop::DesktopOptions busOnly()
{
    desktop::DesktopOptions options;
    options.windowManager = desktop::WindowManager::none;
    options.accessibility = desktop::Accessibility::none;
    options.keyStore = desktop::KeyStore::absent;
    return options;
}

QStringList *capturedLog = nullptr;

void captureLog(QtMsgType, const QMessageLogContext &, const QString &message)
{
    if (capturedLog != nullptr) {
        capturedLog->append(message);
    }
}

class PortalHotKeysTest : public ::testing::Test {
protected:
    PortalHotKeysTest()
    {
        capturedLog = &m_log;
        m_earlier = qInstallMessageHandler(captureLog);
    }
    ~PortalHotKeysTest() override
    {
        qInstallMessageHandler(m_earlier);
        capturedLog = nullptr;
    }

    desktop::Process &startPortal()
    {
        desktop::Process &portal = m_desktop->launch(QStringLiteral(ORVESA_FAKE_PORTAL));
        EXPECT_EQ(portal.readLine(), "ready");
        return portal;
    }

    void listenTo(PortalHotKeys &hotKeys)
    {
        EXPECT_EQ(hotKeys.installHandler([this](HotKeyID id) {
            m_pressed.push_back(id.id);
            return HotKeyStatus::noErr;
        }),
                  HotKeyStatus::noErr);
    }

    /// Another portal in place of one that was killed, once that is known to have gone.
    desktop::Process &startPortalAfterLoss()
    {
        waitUntil([this] { return !m_log.isEmpty(); }, u"the word about it"_s);
        return startPortal();
    }

    /// After the portal's loss: what is registered is bound there, and works.
    void expectBoundAt(desktop::Process &portal, const QByteArray &binding)
    {
        EXPECT_EQ(portal.readLine(), "session");
        EXPECT_EQ(portal.readLine(), binding);
        portal.write("press hotkey-1-ALT+d\n");
        waitUntil([this] { return m_pressed.size() == 1; }, u"the press"_s);
        EXPECT_EQ(m_pressed.front(), 1U);
        EXPECT_EQ(m_log.size(), 1);
    }

    AdoptedDesktop m_desktop{busOnly()};
    QStringList m_log;
    std::vector<quint32> m_pressed;

private:
    QtMessageHandler m_earlier = nullptr;
};

TEST_F(PortalHotKeysTest, BindsWhatIsRegisteredInOneGoAndHearsOfPresses)
{
    desktop::Process &portal = startPortal();
    PortalHotKeys hotKeys;
    std::vector<quint32> pressed;
    EXPECT_EQ(hotKeys.installHandler([&pressed](HotKeyID id) {
        pressed.push_back(id.id);
        return HotKeyStatus::noErr;
    }),
              HotKeyStatus::noErr);
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
    waitUntil([&pressed] { return pressed.size() == 2; }, u"the presses"_s);
    EXPECT_EQ(pressed, (std::vector<quint32>{2, 1}));

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

TEST_F(PortalHotKeysTest, BindsWhatChangesWhileTheSessionIsStillToCome)
{
    desktop::Process &portal = startPortal();
    portal.write("hold\n");
    EXPECT_EQ(portal.readLine(), "holding");
    PortalHotKeys hotKeys;
    listenTo(hotKeys);
    EXPECT_EQ(hotKeys.registerHotKey(keyD, option, {signature, 1}).status, HotKeyStatus::noErr);
    EXPECT_EQ(portal.readLine(), "session");
    EXPECT_EQ(hotKeys.registerHotKey(keyS, option, {signature, 2}).status, HotKeyStatus::noErr);
    desktop::processEventsFor(std::chrono::milliseconds(100)); // there is one path, and it is taken
    portal.write("go on\n");
    EXPECT_EQ(portal.readLine(), "close");
    EXPECT_EQ(portal.readLine(), "session");
    EXPECT_EQ(portal.readLine(), "bind hotkey-1-ALT+d=ALT+d (), hotkey-2-ALT+s=ALT+s ()");
    portal.write("press hotkey-2-ALT+s\n");
    waitUntil([this] { return m_pressed.size() == 1; }, u"the press"_s);
    EXPECT_EQ(m_pressed.front(), 2U);
    EXPECT_TRUE(m_log.isEmpty());
}

TEST_F(PortalHotKeysTest, KeepsTheSessionWhenAChangeIsTakenBackBeforeItIsThere)
{
    desktop::Process &portal = startPortal();
    portal.write("hold\n");
    EXPECT_EQ(portal.readLine(), "holding");
    PortalHotKeys hotKeys;
    EXPECT_EQ(hotKeys.registerHotKey(keyD, option, {signature, 1}).status, HotKeyStatus::noErr);
    EXPECT_EQ(portal.readLine(), "session");
    const HotKeyRegistration second = hotKeys.registerHotKey(keyS, option, {signature, 2});
    desktop::processEventsFor(std::chrono::milliseconds(50));
    EXPECT_EQ(hotKeys.unregisterHotKey(second.reference), HotKeyStatus::noErr);
    desktop::processEventsFor(std::chrono::milliseconds(50));
    portal.write("go on\n");
    EXPECT_EQ(portal.readLine(), "bind hotkey-1-ALT+d=ALT+d ()");
}

TEST_F(PortalHotKeysTest, AsksForNoSessionBeforeTheOneBeforeIsClosed)
{
    desktop::Process &portal = startPortal();
    PortalHotKeys hotKeys;
    listenTo(hotKeys);
    EXPECT_EQ(hotKeys.registerHotKey(keyD, option, {signature, 1}).status, HotKeyStatus::noErr);
    EXPECT_EQ(portal.readLine(), "session");
    EXPECT_EQ(portal.readLine(), "bind hotkey-1-ALT+d=ALT+d ()");
    portal.write("hold closing\n");
    EXPECT_EQ(portal.readLine(), "holding");
    EXPECT_EQ(hotKeys.registerHotKey(keyS, option, {signature, 2}).status, HotKeyStatus::noErr);
    EXPECT_EQ(portal.readLine(), "close");
    EXPECT_EQ(hotKeys.registerHotKey(keyS, option | shift, {signature, 3}).status, HotKeyStatus::noErr);
    desktop::processEventsFor(std::chrono::milliseconds(100));
    portal.write("go on\n");
    EXPECT_EQ(portal.readLine(), "session");
    EXPECT_EQ(portal.readLine(), "bind hotkey-1-ALT+d=ALT+d (), hotkey-2-ALT+s=ALT+s (), "
                                 "hotkey-3-ALT+SHIFT+s=ALT+SHIFT+s ()");
    portal.write("press hotkey-3-ALT+SHIFT+s\n");
    waitUntil([this] { return m_pressed.size() == 1; }, u"the press"_s);
    EXPECT_EQ(m_pressed.front(), 3U);
    EXPECT_TRUE(m_log.isEmpty());
}

TEST_F(PortalHotKeysTest, WaitsForNoAnswerToAClosingForEver)
{
    desktop::Process &portal = startPortal();
    PortalHotKeys hotKeys(std::chrono::milliseconds(200));
    EXPECT_EQ(hotKeys.registerHotKey(keyD, option, {signature, 1}).status, HotKeyStatus::noErr);
    EXPECT_EQ(portal.readLine(), "session");
    EXPECT_EQ(portal.readLine(), "bind hotkey-1-ALT+d=ALT+d ()");
    portal.write("swallow closing\n");
    EXPECT_EQ(portal.readLine(), "holding");
    QElapsedTimer elapsed;
    elapsed.start();
    EXPECT_EQ(hotKeys.registerHotKey(keyS, option, {signature, 2}).status, HotKeyStatus::noErr);
    EXPECT_EQ(portal.readLine(), "close");
    EXPECT_EQ(portal.readLine(), "session");
    EXPECT_GE(elapsed.elapsed(), 190);
    EXPECT_EQ(portal.readLine(), "bind hotkey-1-ALT+d=ALT+d (), hotkey-2-ALT+s=ALT+s ()");
    EXPECT_TRUE(m_log.isEmpty());
}

TEST_F(PortalHotKeysTest, WaitsForNoSessionForEverAndTakesOneThatComesLate)
{
    desktop::Process &portal = startPortal();
    portal.write("hold\n");
    EXPECT_EQ(portal.readLine(), "holding");
    PortalHotKeys hotKeys(std::chrono::seconds(3), std::chrono::milliseconds(200));
    EXPECT_EQ(hotKeys.registerHotKey(keyD, option, {signature, 1}).status, HotKeyStatus::noErr);
    EXPECT_EQ(portal.readLine(), "session");
    waitUntil([this] { return m_log.size() == 1; }, u"the word about it"_s);
    EXPECT_TRUE(m_log.first().contains(u"orvesa-translate --perform translateSelection"_s));
    portal.write("go on\n");
    EXPECT_EQ(portal.readLine(), "bind hotkey-1-ALT+d=ALT+d ()");
}

TEST_F(PortalHotKeysTest, ClosesTheSessionThatNeverCameBeforeItAsksForAnother)
{
    desktop::Process &portal = startPortal();
    portal.write("hold\n");
    EXPECT_EQ(portal.readLine(), "holding");
    PortalHotKeys hotKeys(std::chrono::seconds(3), std::chrono::milliseconds(200));
    EXPECT_EQ(hotKeys.registerHotKey(keyD, option, {signature, 1}).status, HotKeyStatus::noErr);
    EXPECT_EQ(portal.readLine(), "session");
    EXPECT_EQ(hotKeys.registerHotKey(keyS, option, {signature, 2}).status, HotKeyStatus::noErr);
    EXPECT_EQ(portal.readLine(), "close");
    EXPECT_EQ(portal.readLine(), "session");
    portal.write("go on\n"); // with the answer to the first one, which is nobody's any more
    EXPECT_EQ(portal.readLine(), "bind hotkey-1-ALT+d=ALT+d (), hotkey-2-ALT+s=ALT+s ()");
    EXPECT_EQ(m_log.size(), 1);
}

TEST_F(PortalHotKeysTest, BindsAnewWhenThePortalIsBack)
{
    desktop::Process &portal = startPortal();
    PortalHotKeys hotKeys;
    listenTo(hotKeys);
    EXPECT_EQ(hotKeys.registerHotKey(keyD, option, {signature, 1}).status, HotKeyStatus::noErr);
    EXPECT_EQ(portal.readLine(), "session");
    EXPECT_EQ(portal.readLine(), "bind hotkey-1-ALT+d=ALT+d ()");
    portal.kill();
    expectBoundAt(startPortalAfterLoss(), "bind hotkey-1-ALT+d=ALT+d ()");
}

TEST_F(PortalHotKeysTest, OutlivesAPortalThatVanishesWhileASessionIsAwaited)
{
    desktop::Process &portal = startPortal();
    portal.write("hold\n");
    EXPECT_EQ(portal.readLine(), "holding");
    PortalHotKeys hotKeys;
    listenTo(hotKeys);
    EXPECT_EQ(hotKeys.registerHotKey(keyD, option, {signature, 1}).status, HotKeyStatus::noErr);
    EXPECT_EQ(portal.readLine(), "session");
    portal.kill();
    expectBoundAt(startPortalAfterLoss(), "bind hotkey-1-ALT+d=ALT+d ()");
}

TEST_F(PortalHotKeysTest, OutlivesAPortalThatVanishesBeforeItTakesTheCall)
{
    desktop::Process &portal = startPortal();
    PortalHotKeys hotKeys;
    listenTo(hotKeys);
    EXPECT_EQ(hotKeys.registerHotKey(keyD, option, {signature, 1}).status, HotKeyStatus::noErr);
    portal.freeze();
    desktop::processEventsFor(std::chrono::milliseconds(50)); // the call leaves
    portal.kill();
    expectBoundAt(startPortalAfterLoss(), "bind hotkey-1-ALT+d=ALT+d ()");
}

TEST_F(PortalHotKeysTest, OutlivesAPortalThatVanishesWhileASessionIsClosed)
{
    desktop::Process &portal = startPortal();
    PortalHotKeys hotKeys;
    listenTo(hotKeys);
    EXPECT_EQ(hotKeys.registerHotKey(keyS, option, {signature, 2}).status, HotKeyStatus::noErr);
    EXPECT_EQ(portal.readLine(), "session");
    EXPECT_EQ(portal.readLine(), "bind hotkey-2-ALT+s=ALT+s ()");
    portal.write("hold closing\n");
    EXPECT_EQ(portal.readLine(), "holding");
    EXPECT_EQ(hotKeys.registerHotKey(keyD, option, {signature, 1}).status, HotKeyStatus::noErr);
    EXPECT_EQ(portal.readLine(), "close");
    portal.kill();
    expectBoundAt(startPortalAfterLoss(), "bind hotkey-1-ALT+d=ALT+d (), hotkey-2-ALT+s=ALT+s ()");
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

TEST_F(PortalHotKeysTest, ChangesShortcutsWhileTheUserIsAskedAboutThoseBefore)
{
    desktop::Process &portal = startPortal();
    PortalHotKeys hotKeys;
    EXPECT_EQ(hotKeys.registerHotKey(keyD, option, {signature, 1}).status, HotKeyStatus::noErr);
    EXPECT_EQ(portal.readLine(), "session");
    EXPECT_EQ(portal.readLine(), "bind hotkey-1-ALT+d=ALT+d ()");
    portal.write("hold\n");
    EXPECT_EQ(portal.readLine(), "holding");
    const HotKeyRegistration second = hotKeys.registerHotKey(keyS, option, {signature, 2});
    EXPECT_EQ(second.status, HotKeyStatus::noErr);
    EXPECT_EQ(portal.readLine(), "close");
    EXPECT_EQ(portal.readLine(), "session");
    portal.write("go on\nhold\n");
    EXPECT_EQ(portal.readLine(), "holding");
    EXPECT_EQ(portal.readLine(), "bind hotkey-1-ALT+d=ALT+d (), hotkey-2-ALT+s=ALT+s ()");
    EXPECT_EQ(hotKeys.unregisterHotKey(second.reference), HotKeyStatus::noErr);
    EXPECT_EQ(portal.readLine(), "close");
    EXPECT_EQ(portal.readLine(), "session");
    portal.write("go on\n");
    EXPECT_EQ(portal.readLine(), "bind hotkey-1-ALT+d=ALT+d ()");
}

TEST_F(PortalHotKeysTest, TakesKeysThatComeWithTheSession)
{
    desktop::Process &portal = startPortal();
    portal.write("give\n");
    EXPECT_EQ(portal.readLine(), "giving");
    PortalHotKeys hotKeys;
    std::vector<quint32> pressed;
    EXPECT_EQ(hotKeys.installHandler([&pressed](HotKeyID id) {
        pressed.push_back(id.id);
        return HotKeyStatus::noErr;
    }),
              HotKeyStatus::noErr);
    const HotKeyRegistration first = hotKeys.registerHotKey(keyD, option, {signature, 1});
    EXPECT_EQ(portal.readLine(), "session");
    EXPECT_EQ(portal.readLine(), "give hotkey-1-ALT+d ALT+d");
    portal.write("press hotkey-1-ALT+d\n");
    waitUntil([&pressed] { return pressed.size() == 1; }, u"the press"_s);

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
}

TEST(PortalShortcutTest, WritesKeysAsTheDesktopDoes)
{
    EXPECT_EQ(PortalShortcut::trigger(keyD, option), u"ALT+d"_s);
    EXPECT_EQ(PortalShortcut::trigger(96, 0), u"F5"_s);
    EXPECT_EQ(PortalShortcut::trigger(49, CarbonModifier::command), u"LOGO+space"_s);
    EXPECT_EQ(PortalShortcut::trigger(36, CarbonModifier::control | shift), u"CTRL+SHIFT+Return"_s);
    EXPECT_EQ(PortalShortcut::trigger(1000, option), QString());
}

} // namespace
} // namespace orvesa
