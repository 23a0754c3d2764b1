#include "Platform/linux/X11TerminalSelection.h"

#include "Platform/AdoptedDesktop.h"
#include "Platform/BusyServer.h"

#include <gtest/gtest.h>

#include <xcb/xfixes.h>
#include <xcb/xinput.h>

namespace orvesa {

using namespace Qt::StringLiterals;
using desktop::processEventsFor;
using desktop::Selection;
using desktop::waitUntil;
using tests::AdoptedDesktop;

TEST(X11TerminalSelectionTest, FollowsTheHighlightAlsoWhenTheServerWasBusyAtFirst)
{
    desktop::DesktopOptions options;
    options.accessibility = desktop::Accessibility::none;
    options.keyStore = desktop::KeyStore::absent;
    AdoptedDesktop desktop(options);
    const QString script = desktop->folders().write(u"home/run.sh"_s, "printf '\\033[2J\\033[H" +
                                                                          QByteArray("word word word\\n").repeated(8) +
                                                                          "\\033]0;shown\\007'\ncat\n");
    desktop::Process &terminal = desktop->launch(u"xterm"_s, {u"-e"_s, u"sh "_s + script});
    const xcb_window_t window = desktop->windows().awaitWindow({.pid = terminal.pid()});
    desktop->windows().awaitActive(window);
    waitUntil([&] { return desktop->windows().title(window) == u"shown"_s; }, u"the words"_s);

    X11Connection connection;
    ASSERT_NE(connection.extension(xcb_xfixes_id), nullptr);
    ASSERT_NE(connection.extension(xcb_input_id), nullptr);
    X11TerminalSelection selection(connection);
    {
        const tests::BusyServer busy;
        selection.watch();
        EXPECT_GT(connection.lateReplies(), 0U);
    }
    bool isAnswered = false;
    connection.whenServerAnswers([&isAnswered] { isAnswered = true; });
    waitUntil([&isAnswered] { return isAnswered; }, u"the server"_s);

    const QPoint place = desktop->windows().geometry(window).topLeft() + QPoint(12, 40);
    desktop->pointer().clickAt(place);
    desktop->pointer().click();
    desktop->selections().awaitText(Selection::primary, u"word"_s);
    EXPECT_EQ(selection.text(terminal.pid()), u"word"_s);
    processEventsFor(desktop::doubleClick);
    desktop->pointer().click();
    // The window manager may keep the click back for a moment.
    waitUntil([&] { return !selection.text(terminal.pid()); }, u"the highlight's end to be known"_s);
    EXPECT_EQ(desktop->selections().text(Selection::primary), u"word"_s) << "the terminal keeps it";
}

} // namespace orvesa
