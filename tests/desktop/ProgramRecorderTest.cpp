// The product's shortcut recorder with real keys: every key is its, also registered ones and the window manager's.

#include "desktop/ProgramFixture.h"
#include "desktop/SettingsWindow.h"

namespace orvesa::desktop {

using namespace Qt::StringLiterals;
using service::ServiceRequest;

class ProgramRecorder : public ProgramFixture {
protected:
    void SetUp() override
    {
        setUp();
        service.setResponder([](const ServiceRequest &) { return answer(u"answered"_s); });
        program->start();
        settings = std::make_unique<SettingsWindow>(*desktop, *program);
        settings->open();
        window = settings->window();
        settings->choose(u"Shortcuts"_s, u"Customize the global keyboard shortcuts"_s);
        recorder = awaitAccessible(
            [](const Accessible &accessible) {
                return accessible.name().startsWith(u"Translate Selection, "_s) && isShown(accessible);
            },
            u"the recorder"_s);
    }

    static bool isShown(const Accessible &accessible) { return accessible.has(AccessibleState::showing); }

    Accessible awaitAccessible(const std::function<bool(const Accessible &)> &condition, const QString &what)
    {
        Accessible found;
        waitUntil(
            [&] {
                found = desktop->accessibles().application(program->process().pid()).find(condition);
                return !found.isNull();
            },
            what);
        return found;
    }

    void record()
    {
        ASSERT_TRUE(recorder.doAction(u"Press"_s));
        awaitShown(u"Type shortcut…"_s);
    }
    void awaitShown(const QString &text)
    {
        waitUntil([&] { return recorder.name() == u"Translate Selection, "_s + text; },
                  u"the recorder to show '%1', not '%2'"_s.arg(text, recorder.name()));
    }

    std::unique_ptr<SettingsWindow> settings;
    xcb_window_t window = 0;
    Accessible recorder;
};

TEST_F(ProgramRecorder, TakesEveryKeyAndKeepsNone)
{
    // A registered one: its own is accepted, another's is refused, and neither starts anything.
    record();
    desktop->windows().screenshot(desktop->folders().top() + u"/recording.png"_s, window);
    desktop->keyboard().press(u"Alt+d"_s);
    awaitShown(u"⌥D"_s);
    record();
    desktop->keyboard().press(u"Alt+s"_s);
    awaitAccessible(
        [](const Accessible &accessible) {
            return accessible.readable() == u"⌥S is already used by another action."_s && isShown(accessible);
        },
        u"the refusal"_s);
    awaitShown(u"Type shortcut…"_s);
    // The window manager's, and keys that controls use.
    for (const auto &[keys, shown] :
         {std::pair{u"Alt+Tab"_s, u"⌥⇥"_s}, std::pair{u"Ctrl+Alt+Return"_s, u"⌃⌥↩"_s},
          std::pair{u"Super+space"_s, u"⌘Space"_s}, std::pair{u"Alt+F4"_s, u"⌥F4"_s}, std::pair{u"F5"_s, u"F5"_s}}) {
        desktop->keyboard().press(keys);
        awaitShown(shown);
        record();
    }
    desktop->keyboard().press(u"Tab"_s);
    desktop->keyboard().press(u"Ctrl+Alt+k"_s);
    awaitShown(u"⌃⌥K"_s);
    waitUntil([&] { return desktop->keyboard().isTaken(u"Ctrl+Alt+k"_s); }, u"the new shortcut to be held"_s);
    EXPECT_FALSE(desktop->keyboard().isTaken(u"Alt+d"_s));
    EXPECT_EQ(desktop->windows().active(), window);
    EXPECT_TRUE(service.requests().empty());
    EXPECT_FALSE(program->panel());
}

TEST_F(ProgramRecorder, GivesTheKeyboardBack)
{
    record();
    desktop->keyboard().press(u"Escape"_s);
    awaitShown(u"⌥D"_s);
    EXPECT_TRUE(desktop->windows().isMapped(window)) << "Escape was the recorder's alone";
    // A key that is held on after it was recorded starts nothing and types nothing.
    record();
    desktop->keyboard().keyDown(u"Alt"_s);
    desktop->keyboard().keyDown(u"k"_s);
    awaitShown(u"⌥K"_s);
    waitUntil([&] { return desktop->keyboard().isTaken(u"Alt+k"_s); }, u"the new shortcut to be held"_s);
    processEventsFor(std::chrono::seconds(1)); // the server repeats held keys after 660 ms
    EXPECT_FALSE(program->panel());
    desktop->keyboard().keyUp(u"k"_s);
    desktop->keyboard().keyUp(u"Alt"_s);
    // Closed while it listens, the window leaves nothing behind.
    record();
    desktop->windows().close(window);
    desktop->windows().awaitNoWindow({.pid = program->process().pid()});
    editor = std::make_unique<TextEditor>(*desktop, u"texto"_s);
    editor->selectAll();
    desktop->keyboard().press(u"Alt+k"_s);
    awaitResultWith(u"answered"_s);
}

} // namespace orvesa::desktop
