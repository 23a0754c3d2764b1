// The shortcuts over large applications: a browser, and an editor with many menus.

#include "desktop/ShortcutFixture.h"

namespace orvesa::desktop {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto startBound = 60s;

} // namespace

class HeavyShortcuts : public ShortcutFixture {};

TEST_F(HeavyShortcuts, FireInEveryLockStateOnEveryLayoutOverChromium)
{
    const QString path = desktop->folders().write(
        u"home/page.html"_s, "<!DOCTYPE html><meta charset=utf-8><title>Page</title><textarea rows=6 cols=60 "
                             "autofocus>texto</textarea>");
    open(u"chromium"_s,
         {u"--no-sandbox"_s, u"--no-first-run"_s, u"--no-default-browser-check"_s, u"--disable-gpu"_s,
          u"--password-store=basic"_s, u"--disable-background-networking"_s, u"--disable-component-update"_s,
          u"--user-data-dir="_s + desktop->folders().home() + u"/c"_s, u"--window-size=1000,700"_s,
          u"file://"_s + path},
         u"Chromium"_s, startBound);
    waitUntil([&] { return desktop->windows().title(front).startsWith(u"Page"_s); }, u"the page"_s, startBound);
    waitUntil(
        [&] {
            desktop->keyboard().press(u"Ctrl+a"_s);
            return happensWithin(500ms, [&] { return desktop->selections().text(Selection::primary) == u"texto"_s; });
        },
        u"the text area's selection"_s, startBound);
    expectAllShortcuts();
}

TEST_F(HeavyShortcuts, TypingGoesOnLetterForLetterInKate)
{
    const QString path = desktop->folders().write(u"home/kate.txt"_s, "");
    const Process &kate = open(u"kate"_s, {u"--new"_s, path}, u"kate"_s, startBound);
    const Accessible content = desktop->accessibles().await(
        [&] {
            return desktop->accessibles().application(kate.pid()).find([](const Accessible &accessible) {
                return accessible.has(AccessibleState::focused) &&
                       accessible.interfaces().contains(u"org.a11y.atspi.Text"_s);
            });
        },
        u"a text with the keyboard"_s, startBound);
    QString typed;
    const auto typeOn = [&](QChar letter) {
        desktop->keyboard().type(letter);
        typed += letter;
        // As an editor of programs it has a line end there before anything is typed.
        return happensWithin(usualDeadline, [&] { return content.text().trimmed() == typed; });
    };
    ASSERT_TRUE(typeOn(u'a'));
    for (int round = 1; round < 40; ++round) {
        // With nothing selected its Copy takes the line, and puts the cursor before it.
        desktop->keyboard().press(u"Shift+Left"_s);
        waitUntil([&] { return content.selectedText() == typed.last(1); }, u"the letter to be selected"_s);
        const std::size_t before = service.requests().size();
        desktop->keyboard().rollByHand(u"Alt+d"_s);
        waitUntil([&] { return service.requests().size() > before; }, u"the request"_s);
        desktop->keyboard().press(u"End"_s);
        ASSERT_TRUE(typeOn(QChar(u'a' + round % 26)))
            << "after press " << round << ": " << content.text().toStdString();
    }
    EXPECT_TRUE(desktop->keyboard().keysDown().empty());
}

} // namespace orvesa::desktop
