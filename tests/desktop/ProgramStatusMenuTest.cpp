// The status item's menu by the mouse, in trays that embed the icon and in trays that draw it, with the panel shown.

#include "desktop/PanelFixture.h"

#include <QImage>

#include <algorithm>

namespace orvesa::desktop {

using namespace Qt::StringLiterals;

class ProgramStatusMenu : public PanelFixture {
protected:
    void showWithTray(Tray tray)
    {
        DesktopOptions options;
        options.tray = tray;
        showAnswer(options);
    }

    /// Windows of that process that were not there before.
    [[nodiscard]] std::vector<xcb_window_t> windowsOf(qint64 pid) const
    {
        return desktop->windows().mapped({.pid = pid});
    }

    xcb_window_t awaitNewWindow(qint64 pid, const std::vector<xcb_window_t> &before)
    {
        xcb_window_t found = 0;
        waitUntil(
            [&] {
                for (const xcb_window_t window : windowsOf(pid)) {
                    if (std::ranges::find(before, window) == before.end()) {
                        found = window;
                    }
                }
                return found != 0;
            },
            u"a menu's window"_s);
        return found;
    }

    /// The first row of a menu: Translate Selection.
    QPoint firstRow(xcb_window_t menu) { return desktop->windows().geometry(menu).topLeft() + QPoint(40, 14); }
};

TEST_F(ProgramStatusMenu, WorksByMouseInATrayThatEmbedsTheIcon)
{
    showWithTray(Tray::embedding);
    const qint64 pid = program->process().pid();
    const xcb_window_t icon = desktop->windows().awaitTrayIcon(pid);
    const QPoint middle = desktop->windows().geometry(icon).center();
    for (const MouseButton button : {MouseButton::left, MouseButton::right}) {
        const auto before = windowsOf(pid);
        desktop->pointer().clickAt(middle, button);
        const xcb_window_t menu = awaitNewWindow(pid, before);
        EXPECT_TRUE(staysShown()) << "a click on the icon is no click elsewhere";
        // A click that only closes the menu leaves the panel.
        desktop->pointer().clickAt(QPoint(30, 500));
        waitUntil([&] { return !desktop->windows().isMapped(menu); }, u"the menu to close"_s);
        EXPECT_TRUE(staysShown());
    }
    desktop->windows().focus(editor->window());
    editor->selectAll();
    const std::size_t requests = service.requests().size();
    const auto before = windowsOf(pid);
    desktop->pointer().clickAt(middle);
    const xcb_window_t menu = awaitNewWindow(pid, before);
    EXPECT_TRUE(isShown());
    desktop->pointer().clickAt(firstRow(menu));
    ASSERT_TRUE(service.waitForRequests(requests + 1));
    awaitResultWith(u"house"_s);
    EXPECT_TRUE(isShown());
}

TEST_F(ProgramStatusMenu, FollowsTheColourOfTheTrayThatEmbedsIt)
{
    showWithTray(Tray::embedding);
    const xcb_window_t icon = desktop->windows().awaitTrayIcon(program->process().pid());
    const auto colors = [&] {
        const QImage picture = desktop->windows().picture(desktop->windows().geometry(icon));
        int lightest = 0;
        int darkest = 255;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                lightest = std::max(lightest, qGray(picture.pixel(x, y)));
                darkest = std::min(darkest, qGray(picture.pixel(x, y)));
            }
        }
        return std::pair(darkest, lightest);
    };
    // This tray is dark: the symbol becomes white.
    EXPECT_TRUE(happensWithin(std::chrono::seconds(3), [&] { return colors().second > 240; }))
        << colors().first << ".." << colors().second;
    EXPECT_LT(colors().first, 128);
}

TEST_F(ProgramStatusMenu, ReadsThePromptsNamesInATrayThatDrawsTheMenu)
{
    DesktopOptions options;
    options.tray = Tray::statusNotifier;
    options.accessibility = Accessibility::none;
    setUp(options);
    program->startUnheard();
    const TrayItem item = desktop->tray().awaitItem(program->process().pid());
    const QStringList names{u"A & B & C"_s, u"fix_my_code"_s, u"_&_"_s, u"R&"_s, u"&_"_s, u"Tab\there"_s};
    QStringList prompts;
    for (qsizetype index = 0; index < names.size(); ++index) {
        prompts.append(uR"({"id":"00000000-0000-4000-8000-00000000000%1","name":"%2","template":"x"})"_s.arg(index).arg(
            QString(names[index]).replace(u'\t', u"\\t"_s)));
    }
    const ProcessResult set =
        desktop->runToEnd(TranslateProgram::pathBeside(),
                          {u"settings"_s, u"set"_s, u"settings.customPrompts"_s, u'[' + prompts.join(u',') + u']'},
                          desktop->withoutDisplay(), {});
    ASSERT_EQ(set.exitCode, 0) << set.standardError.constData();
    QStringList read;
    waitUntil(
        [&] {
            read.clear();
            for (const TrayMenuEntry &entry : desktop->tray().menu(item)) {
                for (const TrayMenuEntry &inner : entry.entries) {
                    read.append(inner.text);
                }
            }
            return !read.empty();
        },
        u"the prompts in the tray's menu"_s);
    EXPECT_EQ(read, QStringList(names).replaceInStrings(u"\t"_s, u" "_s));
}

TEST_F(ProgramStatusMenu, WorksByMouseInATrayThatDrawsTheIcon)
{
    DesktopOptions options;
    options.tray = Tray::statusNotifier;
    setUp(options);
    // Where the icon appears is only to be seen.
    const QImage empty = desktop->windows().picture();
    service.setResponder([](const service::ServiceRequest &) { return answer(u"The house is big."_s); });
    program->start();
    const qint64 pid = program->process().pid();
    desktop->tray().awaitItem(pid);
    QRect icon;
    waitUntil(
        [&] {
            const QImage now = desktop->windows().picture();
            icon = QRect();
            for (int y = 0; y < now.height(); ++y) {
                for (int x = 0; x < now.width(); ++x) {
                    if (now.pixel(x, y) != empty.pixel(x, y)) {
                        icon |= QRect(x, y, 1, 1);
                    }
                }
            }
            return icon.width() >= 10 && icon.height() >= 10;
        },
        u"the icon in the tray"_s);
    ASSERT_LT(icon.width(), 200) << "more than the icon changed";
    editor = std::make_unique<TextEditor>(*desktop, u"La casa es grande."_s);
    editor->selectAll();
    desktop->pointer().moveTo(QPoint(400, 300));
    pressTranslate();
    awaitResultWith(u"house"_s);
    const auto shown = windowsOf(pid);
    ASSERT_EQ(shown.size(), 1U);
    panel = shown.front();

    const auto everything = [this] { return desktop->windows().mapped(); };
    const auto before = everything();
    desktop->pointer().clickAt(icon.center(), MouseButton::right);
    xcb_window_t menu = 0;
    waitUntil(
        [&] {
            for (const xcb_window_t window : everything()) {
                if (std::ranges::find(before, window) == before.end() &&
                    desktop->windows().geometry(window).height() > 60) {
                    menu = window;
                }
            }
            return menu != 0;
        },
        u"the tray's menu"_s);
    processEventsFor(std::chrono::milliseconds(500)); // longer than the menu may take to open
    EXPECT_TRUE(isShown()) << "the menu is ours, whoever draws it";
    desktop->pointer().clickAt(firstRow(menu));
    ASSERT_TRUE(service.waitForRequests(2));
    awaitResultWith(u"house"_s);
    EXPECT_TRUE(isShown());
    // A click beside the icon opens no menu, and is a click elsewhere.
    desktop->pointer().clickAt(QPoint(900, icon.center().y()));
    awaitHidden();
}

} // namespace orvesa::desktop
