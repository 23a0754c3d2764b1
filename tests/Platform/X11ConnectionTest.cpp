#include "Platform/linux/X11Connection.h"

#include "Platform/AdoptedDesktop.h"
#include "Platform/linux/X11HotKeys.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>

#include <memory>

namespace orvesa {

using namespace Qt::StringLiterals;
using desktop::processEventsFor;
using desktop::waitUntil;
using tests::AdoptedDesktop;
using tests::screenOnly;

namespace {

constexpr quint32 keyD = 2;
constexpr quint32 keyS = 1;
constexpr quint32 option = 0x800;
constexpr quint32 signature = 0x4B56484B;

} // namespace

TEST(X11ConnectionTest, IsNotHeldUpByAServerThatAnotherProgramKeepsToItself)
{
    AdoptedDesktop desktop(screenOnly());
    X11Connection connection;
    X11Connection other;
    ASSERT_NE(connection.atom("_NET_ACTIVE_WINDOW"), XCB_ATOM_NONE);
    xcb_grab_server(other.connection());
    (void)other.atom("_ANYTHING"); // the server has seen the grab
    const auto query = [&] {
        return connection.reply(xcb_query_pointer_reply, xcb_query_pointer(connection.connection(), connection.root()));
    };
    QElapsedTimer timer;
    timer.start();
    EXPECT_FALSE(query());
    EXPECT_GE(timer.elapsed(), 240);
    EXPECT_LT(timer.elapsed(), 400);
    xcb_ungrab_server(other.connection());
    other.settle();
    EXPECT_TRUE(query());
    EXPECT_TRUE(connection.isValid());
}

TEST(X11ConnectionTest, OutlivesTheServer)
{
    auto desktop = std::make_unique<AdoptedDesktop>(screenOnly());
    X11Connection connection;
    X11HotKeys hotKeys(connection);
    const HotKeyRegistration registration = hotKeys.registerHotKey(keyD, option, {signature, 1});
    ASSERT_EQ(registration.status, HotKeyStatus::noErr);
    desktop.reset();
    waitUntil([&connection] { return !connection.isValid(); }, u"the connection to notice"_s);
    EXPECT_EQ(hotKeys.registerHotKey(keyS, option, {signature, 2}).status, HotKeyStatus::notAvailable);
    EXPECT_EQ(hotKeys.unregisterHotKey(registration.reference), HotKeyStatus::noErr);
    EXPECT_TRUE(connection.property(connection.root(), "_NET_ACTIVE_WINDOW").empty());
    processEventsFor(std::chrono::milliseconds(50));
}

} // namespace orvesa
