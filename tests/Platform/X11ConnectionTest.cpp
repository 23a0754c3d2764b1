#include "Platform/linux/X11Connection.h"

#include "Platform/AdoptedDesktop.h"
#include "Platform/BusyServer.h"
#include "Platform/linux/X11HotKeys.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>

#include <array>
#include <memory>
#include <string_view>
#include <vector>

#include <xcb/xcbext.h>
#include <xcb/xfixes.h>

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

TEST(X11ConnectionTest, TellsWhatIsUnknownFromWhatIsNot)
{
    AdoptedDesktop desktop(screenOnly());
    X11Connection connection;
    ASSERT_TRUE(connection.isValid());
    xcb_extension_t absent{.name = "ORVESA-ABSENT", .global_id = 0};
    const std::array<std::string_view, 3> names{"_ORVESA_FIRST", "_ORVESA_SECOND", "_ORVESA_THIRD"};
    EXPECT_EQ(connection.property(connection.root(), "_ORVESA_FIRST").size(), 0U);
    EXPECT_EQ(connection.lateReplies(), 0U);

    tests::BusyServer busy;
    EXPECT_EQ(connection.extension(xcb_xfixes_id), nullptr);
    EXPECT_EQ(connection.lateReplies(), 1U);
    EXPECT_FALSE(connection.learnAtoms(names));
    EXPECT_EQ(connection.lateReplies(), 2U);
    const std::vector<QByteArray> none = connection.atomNames({XCB_ATOM_PRIMARY, XCB_ATOM_SECONDARY, XCB_ATOM_ATOM});
    EXPECT_EQ(none, std::vector<QByteArray>(3));
    EXPECT_EQ(connection.lateReplies(), 3U) << "several questions wait no longer than one";

    busy.letGo();
    EXPECT_NE(connection.extension(xcb_xfixes_id), nullptr);
    EXPECT_EQ(connection.extension(absent), nullptr);
    EXPECT_TRUE(connection.learnAtoms(names));
    EXPECT_NE(connection.atom("_ORVESA_THIRD"), XCB_ATOM_NONE);
    EXPECT_EQ(connection.atomNames({connection.atom("_ORVESA_THIRD"), XCB_ATOM_PRIMARY}),
              (std::vector<QByteArray>{"_ORVESA_THIRD", "PRIMARY"}));
    EXPECT_EQ(connection.lateReplies(), 3U);
}

TEST(X11ConnectionTest, SaysWhenTheServerAnswersAgain)
{
    AdoptedDesktop desktop(screenOnly());
    X11Connection connection;
    std::vector<int> called;
    connection.whenServerAnswers([&called] { called.push_back(1); });
    (void)connection.atom("_ANYTHING"); // reads the answer on the way
    EXPECT_TRUE(called.empty()) << "from the event loop";
    waitUntil([&called] { return !called.empty(); }, u"the first call"_s);

    tests::BusyServer busy;
    connection.whenServerAnswers([&] {
        called.push_back(2);
        connection.whenServerAnswers([&called] { called.push_back(4); });
    });
    connection.whenServerAnswers([&called] { called.push_back(3); });
    processEventsFor(std::chrono::milliseconds(100));
    EXPECT_EQ(called, std::vector<int>{1});
    busy.letGo();
    waitUntil([&called] { return called.size() >= 4; }, u"the other calls"_s);
    EXPECT_EQ(called, (std::vector<int>{1, 2, 3, 4}));
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
