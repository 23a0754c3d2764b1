// What becomes of the one-time questions to an X server that another program has to itself for a moment.

#include "Platform/AdoptedDesktop.h"
#include "Platform/BusyServer.h"
#include "Platform/linux/X11HotKeys.h"
#include "Platform/linux/X11KeyboardExtension.h"
#include "Platform/linux/X11Pasteboard.h"
#include "fakes/Awaited.h"
#include "fakes/QtPrinting.h"

#include <gtest/gtest.h>

#include <vector>

namespace orvesa {

using namespace Qt::StringLiterals;
using desktop::Selection;
using desktop::waitUntil;
using tests::AdoptedDesktop;
using tests::screenOnly;

namespace {

constexpr quint32 keyA = 0;
constexpr quint32 keyS = 1;
constexpr quint32 keyD = 2;
constexpr quint32 option = 0x800;
constexpr quint32 signature = 0x4B56484B;

class X11BusyServerTest : public ::testing::Test {
protected:
    /// What was put off until the server answers is done when this returns.
    void awaitServer()
    {
        bool isAnswered = false;
        m_connection.whenServerAnswers([&isAnswered] { isAnswered = true; });
        waitUntil([&isAnswered] { return isAnswered; }, u"the server"_s);
    }
    void installHandler()
    {
        ASSERT_EQ(m_hotKeys.installHandler([this](HotKeyID id) {
            m_pressed.push_back(id.id);
            return HotKeyStatus::noErr;
        }),
                  HotKeyStatus::noErr);
    }
    [[nodiscard]] HotKeyRegistration add(quint32 key, quint32 id)
    {
        return m_hotKeys.registerHotKey(key, option, {signature, id});
    }
    void expectPress(quint32 id)
    {
        m_desktop->keyboard().press(u"Alt+d"_s);
        waitUntil([this] { return !m_pressed.empty(); }, u"the shortcut's press"_s);
        EXPECT_EQ(m_pressed, std::vector<quint32>{id});
    }
    [[nodiscard]] static PasteboardItem textItem(const QByteArray &text)
    {
        return {{QString::fromLatin1(pasteboardPlainText), {text, {}}}};
    }

    AdoptedDesktop m_desktop{screenOnly()};
    X11Connection m_connection;
    X11HotKeys m_hotKeys{m_connection};
    X11Pasteboard m_pasteboard{m_connection};
    std::vector<quint32> m_pressed;
};

} // namespace

TEST_F(X11BusyServerTest, HotKeysOfABusyStartAreHeldAsSoonAsItAnswers)
{
    X11Connection otherConnection;
    X11HotKeys other(otherConnection);
    ASSERT_EQ(other.registerHotKey(keyS, option, {signature, 1}).status, HotKeyStatus::noErr);
    ASSERT_NE(m_connection.extension(xcb_xkb_id), nullptr);

    tests::BusyServer busy;
    const quint64 lateBefore = m_connection.lateReplies();
    installHandler();
    EXPECT_EQ(add(keyD, 1).status, HotKeyStatus::noErr);
    EXPECT_EQ(add(keyD, 2).status, HotKeyStatus::hotKeyExists);
    EXPECT_EQ(add(1000, 3).status, HotKeyStatus::hotKeyInvalid);
    const HotKeyRegistration taken = add(keyS, 4);
    EXPECT_EQ(taken.status, HotKeyStatus::noErr) << "nobody knows yet";
    const HotKeyRegistration dropped = add(keyA, 5);
    EXPECT_EQ(m_hotKeys.unregisterHotKey(dropped.reference), HotKeyStatus::noErr);
    EXPECT_EQ(m_connection.lateReplies(), lateBefore + 1) << "they wait for the server once";

    busy.letGo();
    awaitServer();
    m_desktop->keyboard().press(u"Alt+a"_s);
    m_desktop->keyboard().press(u"Alt+s"_s);
    expectPress(1);
    // From here on all is as after any start.
    EXPECT_EQ(m_hotKeys.unregisterHotKey(taken.reference), HotKeyStatus::noErr);
    EXPECT_EQ(add(keyS, 6).status, HotKeyStatus::hotKeyExists);
    ASSERT_TRUE(tests::moveAlt(otherConnection.connection()));
    otherConnection.settle();
    waitUntil(
        [this] {
            m_desktop->keyboard().press(u"Alt+d"_s);
            return m_pressed.size() > 1;
        },
        u"the shortcut under the other modifier"_s);
}

TEST_F(X11BusyServerTest, HotKeysStayThroughAChangeThatItIsTooBusyToTellOf)
{
    installHandler();
    ASSERT_EQ(add(keyD, 1).status, HotKeyStatus::noErr);
    tests::BusyServer busy;
    constexpr xcb_keycode_t unusedKey = 255;
    constexpr xcb_keysym_t anySymbol = 'x';
    xcb_change_keyboard_mapping(busy.connection(), 1, unusedKey, 1, &anySymbol);
    xcb_flush(busy.connection());
    desktop::processEventsFor(std::chrono::milliseconds(600));
    EXPECT_EQ(m_connection.lateReplies(), 1U) << "one look, and none more before the server answers";
    busy.letGo();
    awaitServer();
    expectPress(1);
}

TEST_F(X11BusyServerTest, HotKeysFollowAModifierThatMovesMeanwhile)
{
    installHandler();
    ASSERT_EQ(add(keyD, 1).status, HotKeyStatus::noErr);
    const quint16 before = X11Modifiers::read(m_connection).alt;
    tests::BusyServer busy;
    ASSERT_TRUE(tests::moveAlt(busy.connection()));
    waitUntil([this] { return m_connection.lateReplies() > 0; }, u"the look at the keyboard"_s);
    EXPECT_EQ(X11Modifiers::ask(m_connection), std::nullopt) << "which is not a keyboard without Alt";
    busy.letGo();
    awaitServer();
    ASSERT_NE(X11Modifiers::read(m_connection).alt, before);
    expectPress(1);
}

TEST_F(X11BusyServerTest, NothingIsKnownOfTheClipboardMeanwhile)
{
    X11Connection otherConnection;
    X11Pasteboard other(otherConnection);
    ASSERT_TRUE(other.write({textItem("kept")}));
    ASSERT_TRUE(m_connection.isValid());
    tests::BusyServer atFirst;
    EXPECT_EQ(awaited(m_pasteboard.itemTypes()), std::nullopt) << "which is not the same as nothing";
    EXPECT_EQ(awaited(m_pasteboard.data(0, u"UTF8_STRING"_s)).outcome, PasteboardReading::Outcome::unreachable);
    atFirst.letGo();
    const qint64 count = m_pasteboard.changeCount();
    const auto types = awaited(m_pasteboard.itemTypes());
    ASSERT_TRUE(types);
    ASSERT_EQ(types->size(), 1U);

    tests::BusyServer later;
    EXPECT_EQ(awaited(m_pasteboard.itemTypes()), std::nullopt);
    EXPECT_EQ(awaited(m_pasteboard.data(0, u"application/x-asked-for-first"_s)).outcome,
              PasteboardReading::Outcome::unreachable);
    later.letGo();
    EXPECT_EQ(awaited(m_pasteboard.itemTypes()), types);
    EXPECT_EQ(awaited(m_pasteboard.string()), u"kept"_s);
    EXPECT_EQ(m_pasteboard.changeCount(), count);
    ASSERT_TRUE(other.write({textItem("copied")}));
    EXPECT_GT(m_pasteboard.changeCount(), count);
}

TEST_F(X11BusyServerTest, WhatIsWrittenToTheClipboardMeanwhileIsThereAfterwards)
{
    ASSERT_TRUE(m_connection.isValid());
    tests::BusyServer busy;
    for (const auto *const text : {"replaced", "written"}) {
        m_pasteboard.clear();
        EXPECT_TRUE(m_pasteboard.write({textItem(text)}));
    }
    desktop::processEventsFor(std::chrono::milliseconds(50));
    busy.letGo();
    awaitServer();
    m_desktop->selections().awaitText(Selection::clipboard, u"written"_s);
}

} // namespace orvesa
