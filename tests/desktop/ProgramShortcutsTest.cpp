// The product's shortcuts over real applications: they fire, once, whatever the keyboard is set to, and the application
// in front is left as it was.

#include "desktop/ShortcutFixture.h"

namespace orvesa::desktop {

using namespace Qt::StringLiterals;

class ProgramShortcuts : public ShortcutFixture {};

TEST_F(ProgramShortcuts, TypingGoesOnLetterForLetterInAQt5Editor)
{
    // Its menu bar takes the keyboard when Alt goes down and up with nothing in between.
    const Process &process = open(u"featherpad"_s, {u"--standalone"_s}, u"featherpad"_s);
    const Accessible content = desktop->accessibles().await(process.pid(), u"text"_s);
    waitUntil([&] { return content.has(AccessibleState::focused); }, u"the editor's text to have the focus"_s);
    expectTypingToGoOn(40, [&] { return content.text(); });
}

TEST_F(ProgramShortcuts, FireInEveryLockStateOnEveryLayoutOverMousepad)
{
    const QString path = desktop->folders().write(u"home/text.txt"_s, "texto");
    open(u"mousepad"_s, {u"--disable-server"_s, path}, u"Mousepad"_s);
    desktop->keyboard().press(u"Ctrl+a"_s);
    desktop->selections().awaitText(Selection::primary, u"texto"_s);
    expectAllShortcuts();
}

TEST_F(ProgramShortcuts, FireInEveryLockStateOnEveryLayoutOverFeatherpad)
{
    const QString path = desktop->folders().write(u"home/text.txt"_s, "texto");
    const Process &process = open(u"featherpad"_s, {u"--standalone"_s, path}, u"featherpad"_s);
    const Accessible content = desktop->accessibles().await(process.pid(), u"text"_s);
    waitUntil([&] { return content.has(AccessibleState::focused) && content.text() == u"texto"_s; }, u"the document"_s);
    desktop->keyboard().press(u"Ctrl+a"_s);
    waitUntil([&] { return content.selectedText() == u"texto"_s; }, u"the selection"_s);
    expectAllShortcuts();
}

TEST_F(ProgramShortcuts, FireInEveryLockStateOnEveryLayoutOverXterm)
{
    const QString script = desktop->folders().write(
        u"home/run.sh"_s, "printf '\\033[2J\\033[Htexto\\n'\nprintf '\\033]0;shown\\007'\ncat\n");
    open(u"xterm"_s, {u"-e"_s, u"sh "_s + script}, u"XTerm"_s);
    waitUntil([&] { return desktop->windows().title(front) == u"shown"_s; }, u"the terminal's text"_s);
    const QPoint word = desktop->windows().geometry(front).topLeft() + QPoint(15, 10);
    const auto isSelected = [&] { return desktop->selections().text(Selection::primary) == u"texto"_s; };
    waitUntil(
        [&] {
            processEventsFor(doubleClick); // clicks of an earlier attempt are none of this one's
            desktop->pointer().clickAt(word);
            desktop->pointer().click();
            return happensWithin(std::chrono::seconds(1), isSelected);
        },
        u"the word to be selected"_s);
    expectAllShortcuts();
}

TEST_F(ProgramShortcuts, DoesNotFireWithAFurtherModifierAndOnceWhenHeld)
{
    editor = std::make_unique<TextEditor>(*desktop, u"texto"_s);
    editor->selectAll();
    desktop->keyboard().press(u"Alt+Shift+d"_s);
    desktop->keyboard().press(u"Ctrl+Alt+d"_s);
    processEventsFor(std::chrono::milliseconds(200));
    EXPECT_FALSE(program->isPanelShown());
    EXPECT_TRUE(service.requests().empty());
    desktop->keyboard().keyDown(u"Alt"_s);
    desktop->keyboard().keyDown(u"d"_s);
    processEventsFor(std::chrono::seconds(2)); // the server repeats held keys after 660 ms
    desktop->keyboard().keyUp(u"d"_s);
    desktop->keyboard().keyUp(u"Alt"_s);
    awaitResultWith(u"answered"_s);
    EXPECT_EQ(service.requests().size(), 1U);
}

TEST(ProgramShortcutsTaken, LeaveTheOthersWorkingAndSaySo)
{
    Desktop desktop;
    TranslateProgram program(desktop, TranslateProgram::pathBeside());
    desktop.keyboard().take(u"Alt+s"_s);
    Process &process = program.start();
    EXPECT_TRUE(desktop.keyboard().isTaken(u"Alt+d"_s));
    EXPECT_TRUE(desktop.keyboard().isTaken(u"Alt+a"_s));
    const QByteArray line = "OrvesaTranslate: failed to register hotkey ⌥S for Polish Selection: "
                            "Failed to register global hotkey (status: -9878)";
    EXPECT_EQ(process.standardError().count(line), 1) << process.standardError().constData();
}

} // namespace orvesa::desktop
