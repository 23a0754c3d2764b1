// Captures by the copy keystroke, from an editor that tells nothing on the accessibility bus, with everything on the
// clipboard that could go wrong there.

#include "desktop/apps/CaptureStage.h"

namespace orvesa::desktop {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class CopyByKeys : public CaptureStage {
protected:
    void SetUp() override { setUp(); }

    Process &openUnheard(const QString &text)
    {
        Process &editor =
            open(u"mousepad"_s, {u"--disable-server"_s, desktop->folders().write(u"home/unheard.txt"_s, text.toUtf8())},
                 u"Mousepad"_s, {{u"NO_AT_BRIDGE"_s, u"1"_s}});
        select(u"Ctrl+a"_s, text);
        return editor;
    }
};

TEST_F(CopyByKeys, GivesExactlyWhatIsSelectedAndIsNotDisturbed)
{
    copyPicture();
    openUnheard(sample);
    const QByteArray before = clipboard();
    const xcb_window_t focus = desktop->windows().rawInputFocus();
    for (const auto hold : {0ms, 300ms, 3000ms}) {
        const Captured captured = capture(hold);
        note(u"keystroke, held for %1 ms"_s.arg(hold.count()), captured);
        EXPECT_EQ(captured.text, sample);
        EXPECT_EQ(captured.strategy, u"copied by keystroke"_s);
        EXPECT_EQ(clipboard(), before);
        EXPECT_EQ(desktop->selections().text(Selection::primary), sample);
        EXPECT_EQ(desktop->windows().rawInputFocus(), focus);
    }
    desktop->keyboard().press(u"x"_s);
    EXPECT_EQ(contentByKeys(), u"x"_s);
}

TEST_F(CopyByKeys, LeavesAnEmptyClipboardEmpty)
{
    openUnheard(u"text"_s);
    EXPECT_EQ(desktop->selections().owner(Selection::clipboard), 0U);
    EXPECT_EQ(capture().text, u"text"_s);
    waitUntil([this] { return desktop->selections().owner(Selection::clipboard) == 0; }, u"an empty clipboard"_s);
}

TEST_F(CopyByKeys, PutsFiftyMegabytesBack)
{
    copyPicture(50'000'000);
    openUnheard(u"text"_s);
    const QByteArray before = clipboard();
    const Captured captured = capture();
    note(u"keystroke, 50 MB on the clipboard"_s, captured);
    EXPECT_EQ(captured.text, u"text"_s);
    EXPECT_EQ(clipboard(), before);
    EXPECT_EQ(capture().text, u"text"_s) << "from what we serve ourselves";
    EXPECT_EQ(clipboard(), before);
}

TEST_F(CopyByKeys, RisksNoContentsWhoseOwnerHasStopped)
{
    Process &owner = copyPicture();
    openUnheard(u"text"_s);
    const QByteArray before = clipboard();
    owner.freeze();
    const Captured captured = capture();
    note(u"keystroke, the clipboard's owner has stopped"_s, captured);
    EXPECT_EQ(captured.message, nothingSelected);
    EXPECT_LT(captured.milliseconds, 2000);
    owner.thaw();
    EXPECT_EQ(clipboard(), before);
}

TEST_F(CopyByKeys, PutsBackWhatTheProgramItselfCopied)
{
    openUnheard(u"text"_s);
    EXPECT_EQ(capture().text, u"text"_s);
    desktop->windows().focus(program->awaitPanel());
    const Accessible copy = program->panel().find(u"push button"_s, u"Copy Result"_s);
    ASSERT_TRUE(copy) << program->panel().dump().toStdString();
    EXPECT_TRUE(copy.doAction());
    desktop->selections().awaitText(Selection::clipboard, u"the answer"_s);
    desktop->windows().focus(window());
    EXPECT_EQ(capture().text, u"text"_s);
    EXPECT_EQ(desktop->selections().text(Selection::clipboard), u"the answer"_s);
}

TEST_F(CopyByKeys, AnApplicationThatHasStoppedCostsLittle)
{
    copyPicture();
    Process &editor = openUnheard(u"text"_s);
    const QByteArray before = clipboard();
    editor.freeze();
    const Captured captured = capture();
    note(u"keystroke, the application has stopped"_s, captured);
    EXPECT_EQ(captured.message, nothingSelected);
    EXPECT_LT(captured.milliseconds, 2500);
    EXPECT_EQ(clipboard(), before);
    editor.thaw();
    const int changes = desktop->selections().changes(Selection::primary);
    desktop->keyboard().press(u"x"_s);
    waitUntil([&] { return desktop->selections().changes(Selection::primary) > changes; }, u"the editor"_s);
    EXPECT_EQ(clipboard(), before) << "no late copy";
}

TEST_F(CopyByKeys, AnApplicationThatStopsAnsweringOnTheBusCostsLittle)
{
    copyPicture();
    Process &editor = open(
        u"mousepad"_s, {u"--disable-server"_s, desktop->folders().write(u"home/heard.txt"_s, "heard")}, u"Mousepad"_s);
    (void)awaitFocusedText(editor.pid());
    select(u"Ctrl+a"_s, u"heard"_s);
    const QByteArray before = clipboard();
    EXPECT_EQ(capture().text, u"heard"_s);
    editor.freeze();
    const Captured captured = capture();
    note(u"the application has stopped"_s, captured);
    EXPECT_EQ(captured.message, nothingSelected);
    EXPECT_GT(captured.milliseconds, 200);
    EXPECT_LT(captured.milliseconds, 2500) << "500 ms on the bus, a second for the copy";
    editor.thaw();
    const int changes = desktop->selections().changes(Selection::primary);
    desktop->keyboard().press(u"x"_s);
    waitUntil([&] { return desktop->selections().changes(Selection::primary) > changes; }, u"the editor"_s);
    EXPECT_EQ(clipboard(), before) << "no late copy";
}

} // namespace orvesa::desktop
