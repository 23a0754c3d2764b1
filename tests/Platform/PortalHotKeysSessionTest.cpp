#include "Platform/linux/PortalHotKeys.h"

#include "Platform/PortalHotKeysFixture.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>

#include <chrono>

namespace orvesa {

using namespace Qt::StringLiterals;
using desktop::waitUntil;

namespace {

class PortalHotKeysSessionTest : public tests::PortalHotKeysFixture {};

TEST_F(PortalHotKeysSessionTest, ChangesShortcutsWhileTheUserIsAskedAboutThoseBefore)
{
    desktop::Process &portal = startPortalWithOneBound();
    portal.write("hold\n");
    EXPECT_EQ(portal.readLine(), "holding");
    const HotKeyRegistration second = registerKey(m_hotKeys, keyS, 2);
    EXPECT_EQ(portal.readLine(), "close");
    EXPECT_EQ(portal.readLine(), "session");
    portal.write("go on\nhold\n");
    EXPECT_EQ(portal.readLine(), "holding");
    EXPECT_EQ(portal.readLine(), "bind hotkey-1-ALT+d=ALT+d (), hotkey-2-ALT+s=ALT+s ()");
    EXPECT_EQ(m_hotKeys.unregisterHotKey(second.reference), HotKeyStatus::noErr);
    EXPECT_EQ(portal.readLine(), "close");
    EXPECT_EQ(portal.readLine(), "session");
    portal.write("go on\n");
    EXPECT_EQ(portal.readLine(), "bind hotkey-1-ALT+d=ALT+d ()");
}

TEST_F(PortalHotKeysSessionTest, BindsWhatChangesWhileTheSessionIsStillToCome)
{
    desktop::Process &portal = startPortal("hold");
    (void)registerKey(m_hotKeys, keyD, 1);
    EXPECT_EQ(portal.readLine(), "session");
    (void)registerKey(m_hotKeys, keyS, 2);
    desktop::processEventsFor(std::chrono::milliseconds(100)); // there is one path, and it is taken
    portal.write("go on\n");
    EXPECT_EQ(portal.readLine(), "close");
    expectBound(portal, "hotkey-1-ALT+d=ALT+d (), hotkey-2-ALT+s=ALT+s ()");
    press(portal, "hotkey-2-ALT+s");
    EXPECT_EQ(m_pressed.front(), 2U);
    EXPECT_TRUE(m_log.isEmpty());
}

TEST_F(PortalHotKeysSessionTest, KeepsTheSessionWhenAChangeIsTakenBackBeforeItIsThere)
{
    desktop::Process &portal = startPortal("hold");
    (void)registerKey(m_hotKeys, keyD, 1);
    EXPECT_EQ(portal.readLine(), "session");
    const HotKeyRegistration second = registerKey(m_hotKeys, keyS, 2);
    desktop::processEventsFor(std::chrono::milliseconds(50));
    EXPECT_EQ(m_hotKeys.unregisterHotKey(second.reference), HotKeyStatus::noErr);
    desktop::processEventsFor(std::chrono::milliseconds(50));
    portal.write("go on\n");
    EXPECT_EQ(portal.readLine(), "bind hotkey-1-ALT+d=ALT+d ()");
}

TEST_F(PortalHotKeysSessionTest, AsksForNoSessionBeforeTheOneBeforeIsClosed)
{
    desktop::Process &portal = startPortalWithOneBound();
    portal.write("hold closing\n");
    EXPECT_EQ(portal.readLine(), "holding");
    (void)registerKey(m_hotKeys, keyS, 2);
    EXPECT_EQ(portal.readLine(), "close");
    EXPECT_EQ(m_hotKeys.registerHotKey(keyS, option | shift, {signature, 3}).status, HotKeyStatus::noErr);
    desktop::processEventsFor(std::chrono::milliseconds(100));
    portal.write("go on\n");
    expectBound(portal, "hotkey-1-ALT+d=ALT+d (), hotkey-2-ALT+s=ALT+s (), "
                        "hotkey-3-ALT+SHIFT+s=ALT+SHIFT+s ()");
    press(portal, "hotkey-3-ALT+SHIFT+s");
    EXPECT_EQ(m_pressed.front(), 3U);
    EXPECT_TRUE(m_log.isEmpty());
}

TEST_F(PortalHotKeysSessionTest, WaitsForNoAnswerToAClosingForEver)
{
    desktop::Process &portal = startPortal();
    PortalHotKeys hotKeys(m_x11, std::chrono::milliseconds(200));
    (void)registerKey(hotKeys, keyD, 1);
    expectBound(portal, "hotkey-1-ALT+d=ALT+d ()");
    portal.write("swallow closing\n");
    EXPECT_EQ(portal.readLine(), "holding");
    QElapsedTimer elapsed;
    elapsed.start();
    (void)registerKey(hotKeys, keyS, 2);
    EXPECT_EQ(portal.readLine(), "close");
    EXPECT_EQ(portal.readLine(), "session");
    EXPECT_GE(elapsed.elapsed(), 190);
    EXPECT_EQ(portal.readLine(), "bind hotkey-1-ALT+d=ALT+d (), hotkey-2-ALT+s=ALT+s ()");
    EXPECT_TRUE(m_log.isEmpty());
}

TEST_F(PortalHotKeysSessionTest, WaitsForNoSessionForEverAndTakesOneThatComesLate)
{
    desktop::Process &portal = startPortal("hold");
    PortalHotKeys hotKeys(m_x11, std::chrono::seconds(3), std::chrono::milliseconds(200));
    (void)registerKey(hotKeys, keyD, 1);
    EXPECT_EQ(portal.readLine(), "session");
    waitUntil([this] { return m_log.size() == 1; }, u"the word about it"_s);
    EXPECT_TRUE(m_log.first().contains(u"orvesa-translate --perform translateSelection"_s));
    portal.write("go on\n");
    EXPECT_EQ(portal.readLine(), "bind hotkey-1-ALT+d=ALT+d ()");
}

TEST_F(PortalHotKeysSessionTest, ClosesTheSessionThatNeverCameBeforeItAsksForAnother)
{
    desktop::Process &portal = startPortal("hold");
    PortalHotKeys hotKeys(m_x11, std::chrono::seconds(3), std::chrono::milliseconds(200));
    (void)registerKey(hotKeys, keyD, 1);
    EXPECT_EQ(portal.readLine(), "session");
    (void)registerKey(hotKeys, keyS, 2);
    EXPECT_EQ(portal.readLine(), "close");
    EXPECT_EQ(portal.readLine(), "session");
    portal.write("go on\n"); // with the answer to the first one, which is nobody's any more
    EXPECT_EQ(portal.readLine(), "bind hotkey-1-ALT+d=ALT+d (), hotkey-2-ALT+s=ALT+s ()");
    EXPECT_EQ(m_log.size(), 1);
}

TEST_F(PortalHotKeysSessionTest, BindsAnewWhenThePortalIsBack)
{
    desktop::Process &portal = startPortalWithOneBound();
    portal.kill();
    expectBoundAt(startPortalAfterLoss(), "hotkey-1-ALT+d=ALT+d ()");
}

TEST_F(PortalHotKeysSessionTest, OutlivesAPortalThatVanishesWhileASessionIsAwaited)
{
    desktop::Process &portal = startPortal("hold");
    (void)registerKey(m_hotKeys, keyD, 1);
    EXPECT_EQ(portal.readLine(), "session");
    portal.kill();
    expectBoundAt(startPortalAfterLoss(), "hotkey-1-ALT+d=ALT+d ()");
}

TEST_F(PortalHotKeysSessionTest, OutlivesAPortalThatVanishesBeforeItTakesTheCall)
{
    desktop::Process &portal = startPortal();
    (void)registerKey(m_hotKeys, keyD, 1);
    portal.freeze();
    desktop::processEventsFor(std::chrono::milliseconds(50)); // the call leaves
    portal.kill();
    expectBoundAt(startPortalAfterLoss(), "hotkey-1-ALT+d=ALT+d ()");
}

TEST_F(PortalHotKeysSessionTest, OutlivesAPortalThatVanishesWhileASessionIsClosed)
{
    desktop::Process &portal = startPortal();
    (void)registerKey(m_hotKeys, keyS, 2);
    expectBound(portal, "hotkey-2-ALT+s=ALT+s ()");
    portal.write("hold closing\n");
    EXPECT_EQ(portal.readLine(), "holding");
    (void)registerKey(m_hotKeys, keyD, 1);
    EXPECT_EQ(portal.readLine(), "close");
    portal.kill();
    expectBoundAt(startPortalAfterLoss(), "hotkey-1-ALT+d=ALT+d (), hotkey-2-ALT+s=ALT+s ()");
}

TEST_F(PortalHotKeysSessionTest, SaysWhenTheSessionIsGoneBeforeTheShortcutsAreBound)
{
    desktop::Process &portal = startPortal("hold");
    (void)registerKey(m_hotKeys, keyD, 1);
    EXPECT_EQ(portal.readLine(), "session");
    portal.write("lose\ngo on\n");
    EXPECT_EQ(portal.readLine(), "lost");
    EXPECT_EQ(portal.readLine(), "bind in a closed session");
    waitUntil([this] { return m_log.size() == 1; }, u"the word about it"_s);
    EXPECT_TRUE(m_log.first().contains(u"did not take"_s)) << m_log.first().toStdString();
}

TEST_F(PortalHotKeysSessionTest, AsksForAnotherSessionWhenTheDesktopClosesOne)
{
    desktop::Process &portal = startPortalWithOneBound();
    portal.write("close session\n");
    EXPECT_EQ(portal.readLine(), "closed");
    expectBoundAt(portal, "hotkey-1-ALT+d=ALT+d ()");
    EXPECT_TRUE(m_log.first().contains(u"the desktop closed the session"_s)) << m_log.first().toStdString();

    // One that has served is not forgotten either.
    portal.write("close session\n");
    EXPECT_EQ(portal.readLine(), "closed");
    expectBound(portal, "hotkey-1-ALT+d=ALT+d ()");
    EXPECT_EQ(m_log.size(), 2);
}

TEST_F(PortalHotKeysSessionTest, LetsASessionGoThatIsClosedAgainAndAgain)
{
    desktop::Process &portal = startPortalWithOneBound();
    portal.write("close session\n");
    EXPECT_EQ(portal.readLine(), "closed");
    expectBound(portal, "hotkey-1-ALT+d=ALT+d ()");
    portal.write("close session\n");
    EXPECT_EQ(portal.readLine(), "closed");
    waitUntil([this] { return m_log.size() == 2; }, u"the word about it"_s);
    EXPECT_TRUE(m_log.last().contains(u"orvesa-translate --perform translateSelection"_s));
    desktop::processEventsFor(std::chrono::milliseconds(100)); // whatever it asked for would come before what follows
    (void)registerKey(m_hotKeys, keyS, 2);
    expectBound(portal, "hotkey-1-ALT+d=ALT+d (), hotkey-2-ALT+s=ALT+s ()");
    press(portal, "hotkey-2-ALT+s");
    EXPECT_EQ(m_log.size(), 2);
}

TEST_F(PortalHotKeysSessionTest, TakesNoSessionForClosedThatIsNotItsOwn)
{
    desktop::Process &portal = startPortalWithOneBound();
    portal.write("close another session\n");
    EXPECT_EQ(portal.readLine(), "closed");
    press(portal, "hotkey-1-ALT+d");
    EXPECT_TRUE(m_log.isEmpty());
}

} // namespace
} // namespace orvesa
