// The editing commands of the main menu, by their keys, in the settings window's fields.

#include "desktop/SettingsFixture.h"

namespace orvesa::desktop {

using namespace Qt::StringLiterals;

class EditingKeys : public SettingsFixture {
protected:
    void SetUp() override
    {
        setUpWithoutKey();
        openSettings();
        settings->choose(u"Prompts"_s, u"Your own prompts, runnable on any selected text"_s);
        settings->click(u"Add Prompt"_s, u"push button"_s);
        settings->click(u"Prompt name"_s, u"text"_s);
    }

    void press(const QString &keys) { desktop->keyboard().press(keys); }

    /// What has the keyboard edits by the keys of the main menu's commands.
    void expectEditing()
    {
        const Accessible field = settings->focused();
        const auto awaitField = [&](const QString &text, const QString &after) {
            waitUntil([&] { return field.text() == text; },
                      u"'%1' after %2, not '%3'"_s.arg(text, after, field.text()));
        };
        desktop->keyboard().type(u"one"_s);
        awaitField(u"one"_s, u"typing"_s);
        press(u"Ctrl+a"_s);
        waitUntil([&] { return field.selectedText() == u"one"_s; }, u"everything to be selected"_s);
        press(u"Ctrl+c"_s);
        desktop->selections().awaitText(Selection::clipboard, u"one"_s);
        press(u"Ctrl+x"_s);
        awaitField(QString(), u"Cut"_s);
        press(u"Ctrl+v"_s);
        press(u"Ctrl+v"_s);
        awaitField(u"oneone"_s, u"Paste"_s);
        press(u"Ctrl+z"_s);
        awaitField(u"one"_s, u"Undo"_s);
        press(u"Ctrl+Shift+z"_s);
        awaitField(u"oneone"_s, u"Redo"_s);
    }
};

TEST_F(EditingKeys, EditALine)
{
    expectEditing();
}

TEST_F(EditingKeys, EditSeveralLines)
{
    press(u"Tab"_s);
    waitUntil([this] { return settings->focused().name() != u"Prompt name"_s; }, u"the next field"_s);
    expectEditing();
}

TEST_F(EditingKeys, AreNotNeededForAShortcutOnWhatIsSelected)
{
    desktop->keyboard().type(u"una casa"_s);
    const Accessible field = settings->focused();
    press(u"Ctrl+a"_s);
    waitUntil([&] { return field.selectedText() == u"una casa"_s; }, u"everything to be selected"_s);
    press(u"Alt+d"_s);
    waitUntil([this] { return program->source() == u"una casa"_s; }, u"the panel with what is selected"_s);
    waitUntil([this] { return desktop->selections().owner(Selection::clipboard) == XCB_WINDOW_NONE; },
              u"the clipboard to be empty as before"_s);
}

TEST_F(EditingKeys, PasteWhatAnotherProgramCopied)
{
    editor = std::make_unique<TextEditor>(*desktop, u"from elsewhere"_s);
    editor->selectAll();
    press(u"Ctrl+c"_s);
    desktop->selections().awaitText(Selection::clipboard, u"from elsewhere"_s);
    desktop->windows().focus(settings->window());
    press(u"Ctrl+v"_s);
    waitUntil([this] { return settings->await(u"Prompt name"_s, u"text"_s).text() == u"from elsewhere"_s; },
              u"the pasted text"_s);
}

} // namespace orvesa::desktop
