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

TEST_F(PortalHotKeysSessionTest, BindsWhatChangesWhileTheSessionIsStillToCome)
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

TEST_F(PortalHotKeysSessionTest, KeepsTheSessionWhenAChangeIsTakenBackBeforeItIsThere)
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

TEST_F(PortalHotKeysSessionTest, AsksForNoSessionBeforeTheOneBeforeIsClosed)
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

TEST_F(PortalHotKeysSessionTest, WaitsForNoAnswerToAClosingForEver)
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

TEST_F(PortalHotKeysSessionTest, WaitsForNoSessionForEverAndTakesOneThatComesLate)
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

TEST_F(PortalHotKeysSessionTest, ClosesTheSessionThatNeverCameBeforeItAsksForAnother)
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

TEST_F(PortalHotKeysSessionTest, BindsAnewWhenThePortalIsBack)
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

TEST_F(PortalHotKeysSessionTest, OutlivesAPortalThatVanishesWhileASessionIsAwaited)
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

TEST_F(PortalHotKeysSessionTest, OutlivesAPortalThatVanishesBeforeItTakesTheCall)
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

TEST_F(PortalHotKeysSessionTest, OutlivesAPortalThatVanishesWhileASessionIsClosed)
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

TEST_F(PortalHotKeysSessionTest, SaysWhenTheSessionIsGoneBeforeTheShortcutsAreBound)
{
    desktop::Process &portal = startPortal();
    portal.write("hold\n");
    EXPECT_EQ(portal.readLine(), "holding");
    PortalHotKeys hotKeys;
    EXPECT_EQ(hotKeys.registerHotKey(keyD, option, {signature, 1}).status, HotKeyStatus::noErr);
    EXPECT_EQ(portal.readLine(), "session");
    portal.write("lose\ngo on\n");
    EXPECT_EQ(portal.readLine(), "lost");
    EXPECT_EQ(portal.readLine(), "bind in a closed session");
    waitUntil([this] { return m_log.size() == 1; }, u"the word about it"_s);
    EXPECT_TRUE(m_log.first().contains(u"did not take"_s)) << m_log.first().toStdString();
}

} // namespace
} // namespace orvesa
