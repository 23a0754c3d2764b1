// The general, shortcuts and prompts pages on a private desktop, worked with the mouse and with the keyboard alone.

#include "desktop/SettingsFixture.h"

namespace orvesa::desktop {

using namespace Qt::StringLiterals;

class SettingsPages : public SettingsFixture {
protected:
    static DesktopOptions withTray()
    {
        DesktopOptions options;
        options.tray = Tray::statusNotifier;
        return options;
    }

    void openShortcuts()
    {
        openSettings();
        settings->choose(u"Shortcuts"_s, u"Customize the global keyboard shortcuts"_s);
    }

    void openPrompts()
    {
        openSettings();
        settings->choose(u"Prompts"_s, u"Your own prompts, runnable on any selected text"_s);
    }

    void press(const QString &keys) { desktop->keyboard().press(keys); }

    /// Clicks a control that records, and returns once it listens.
    void record(const QString &name)
    {
        settings->click(name, u"push button"_s);
        settings->awaitText(name.section(u',', 0, 0) + u", Type shortcut…"_s);
    }
};

TEST_F(SettingsPages, ChangingTheLanguageChangesEveryOpenView)
{
    setUp(withTray());
    service.setScript({answer(u"ready"_s)});
    startOver(u"listo"_s);
    const TrayItem item = desktop->tray().awaitItem(program->process().pid());
    settings = std::make_unique<SettingsWindow>(*desktop, *program);
    settings->open();
    // The panel is open beside the window, which a click would hide it by: the keyboard does it.
    desktop->windows().focus(editor->window());
    pressTranslate();
    awaitResultWith(u"ready"_s);
    desktop->windows().focus(settings->window());
    settings->pressUntilFocused(u"Tab"_s, u"English"_s, u"App Language"_s);
    press(u"Up"_s);
    settings->awaitText(u"アプリの言語"_s);
    for (const QString &text : {u"一般"_s, u"ショートカット"_s, u"プロバイダ"_s, u"言語・プロバイダ・権限の設定"_s})
        EXPECT_TRUE(settings->shows(text)) << text.toStdString();
    waitUntil([&] { return desktop->tray().menuTexts(item).contains(u"Orvesa Translate を終了"_s); },
              u"the tray's menu to change its language"_s);
    const auto panelReads = [this](const QString &text) {
        for (const Accessible &window : desktop->accessibles().windows(program->process().pid()))
            if (!window
                     .find([&](const Accessible &element) {
                         return element.name() == text && element.has(AccessibleState::showing);
                     })
                     .isNull())
                return true;
        return false;
    };
    waitUntil([&] { return panelReads(u"結果をコピー"_s); }, u"the panel to change its language"_s);
    press(u"Down"_s);
    settings->awaitText(u"App Language"_s);
    awaitPreference(u"settings.appLanguage = \"en\""_s);
}

TEST_F(SettingsPages, TheGeneralPageWritesEverySettingAtOnce)
{
    setUp();
    openSettings();
    settings->click(u"Forest"_s, u"radio button"_s);
    awaitPreference(u"settings.theme = \"forest\""_s);
    settings->click(u"Thinking Mode"_s, u"check box"_s);
    awaitPreference(u"settings.thinkingEnabled = true"_s);
    settings->chooseWithKeys(settings->await(u"OpenAI"_s, u"combo box"_s, u"Default AI Provider"_s),
                             {u"Down"_s, u"Return"_s});
    awaitPreference(u"settings.defaultProvider = \"gemini\""_s);
    settings->awaitText(u"Gemini"_s);
    EXPECT_TRUE(settings->shows(u"Accessibility permission granted"_s));
}

TEST_F(SettingsPages, AShortcutIsRecordedRefusedAndReset)
{
    setUp();
    openShortcuts();
    record(u"Translate Selection, ⌥D"_s);
    press(u"t"_s);
    settings->awaitText(u"Shortcuts must include ⌘, ⌥ or ⌃ (function keys excepted)."_s);
    press(u"Alt+s"_s);
    settings->awaitText(u"⌥S is already used by another action."_s);
    press(u"Super+Shift+t"_s);
    settings->awaitText(u"Translate Selection, ⇧⌘T"_s);
    EXPECT_FALSE(settings->shows(u"⌥S is already used by another action."_s));
    awaitPreference(u"translateSelection"_s);
    waitUntil([&] { return desktop->keyboard().isTaken(u"Shift+Super+t"_s); }, u"the new shortcut"_s);
    EXPECT_FALSE(desktop->keyboard().isTaken(u"Alt+d"_s));

    settings->click(u"Reset to default (⌥D)"_s, u"push button"_s);
    settings->awaitText(u"Translate Selection, ⌥D"_s);
    awaitNoPreference(u"translateSelection"_s);
    waitUntil([&] { return desktop->keyboard().isTaken(u"Alt+d"_s); }, u"the default shortcut"_s);

    record(u"OCR Translate, ⌥A"_s);
    press(u"Escape"_s);
    settings->awaitText(u"OCR Translate, ⌥A"_s);
}

TEST_F(SettingsPages, APromptIsAddedEditedRunAndDeleted)
{
    setUp();
    service.setScript({answer(u"three points"_s)});
    openPrompts();
    settings->awaitText(u"No custom prompts yet. Click “Add Prompt” to create one."_s);
    settings->click(u"Add Prompt"_s, u"push button"_s);
    settings->click(u"Prompt name"_s, u"text"_s);
    desktop->keyboard().type(u"given up"_s);
    settings->click(u"Cancel"_s, u"push button"_s);
    settings->awaitText(u"No custom prompts yet. Click “Add Prompt” to create one."_s);

    settings->click(u"Add Prompt"_s, u"push button"_s);
    settings->click(u"Prompt name"_s, u"text"_s);
    desktop->keyboard().type(u"Summary"_s);
    press(u"Tab"_s);
    desktop->keyboard().type(u"In short: {text}"_s);
    record(u"Shortcut, None"_s);
    press(u"Alt+d"_s);
    settings->awaitText(u"⌥D is already used by another action."_s);
    press(u"Ctrl+Alt+k"_s);
    settings->awaitText(u"Shortcut, ⌃⌥K"_s);
    EXPECT_FALSE(preferences().contains(u"Summary"_s));
    settings->click(u"Save"_s, u"push button"_s);
    settings->awaitText(u"Summary"_s);
    settings->awaitText(u"⌃⌥K"_s);
    awaitPreference(u"Summary"_s);

    settings->click(u"Edit"_s, u"push button"_s, u"Summary"_s);
    record(u"Shortcut, ⌃⌥K"_s);
    press(u"Ctrl+Alt+k"_s); // its own is no conflict
    settings->awaitText(u"Shortcut, ⌃⌥K"_s);
    settings->click(u"Prompt name"_s, u"text"_s);
    press(u"Ctrl+a"_s);
    press(u"BackSpace"_s);
    settings->click(u"Save"_s, u"push button"_s);
    settings->awaitText(u"Untitled Prompt"_s);

    waitUntil([&] { return desktop->keyboard().isTaken(u"Ctrl+Alt+k"_s); }, u"the prompt's shortcut"_s);
    editor = std::make_unique<TextEditor>(*desktop, u"largo"_s);
    editor->selectAll();
    press(u"Ctrl+Alt+k"_s);
    awaitResultWith(u"three points"_s);
    EXPECT_EQ(program->panelTitle(), u"Untitled Prompt"_s);
    EXPECT_TRUE(service.requests().back().body.contains("In short: largo"));

    desktop->windows().focus(settings->window());
    settings->click(u"Delete"_s, u"push button"_s, u"Untitled Prompt"_s);
    settings->awaitText(u"No custom prompts yet. Click “Add Prompt” to create one."_s);
    waitUntil([&] { return !desktop->keyboard().isTaken(u"Ctrl+Alt+k"_s); }, u"the shortcut to be free"_s);
}

TEST_F(SettingsPages, TheKeyboardAloneDoesEverything)
{
    setUpWithoutKey();
    openSettings();
    settings->pressUntilFocused(u"Tab"_s, u"General"_s);
    settings->pressUntilFocused(u"Tab"_s, u"English"_s, u"App Language"_s);
    press(u"Up"_s);
    settings->awaitText(u"アプリの言語"_s);
    press(u"Down"_s);
    settings->awaitText(u"App Language"_s);
    settings->pressUntilFocused(u"Tab"_s, u"Violet"_s);
    press(u"Right"_s);
    awaitPreference(u"settings.theme = \"ocean\""_s);
    settings->pressUntilFocused(u"Tab"_s, u"Thinking Mode"_s);
    press(u"space"_s);
    awaitPreference(u"settings.thinkingEnabled = true"_s);

    settings->pressUntilFocused(u"Shift+Tab"_s, u"General"_s);
    press(u"Down"_s);
    settings->awaitText(u"Customize the global keyboard shortcuts"_s);
    settings->pressUntilFocused(u"Tab"_s, u"Translate Selection, ⌥D"_s);
    press(u"Return"_s);
    settings->awaitText(u"Translate Selection, Type shortcut…"_s);
    press(u"Ctrl+Alt+j"_s);
    settings->awaitText(u"Translate Selection, ⌃⌥J"_s);
    settings->pressUntilFocused(u"Tab"_s, u"Reset to default (⌥D)"_s);
    press(u"space"_s);
    settings->awaitText(u"Translate Selection, ⌥D"_s);

    settings->pressUntilFocused(u"Shift+Tab"_s, u"Shortcuts"_s);
    press(u"Down"_s);
    settings->pressUntilFocused(u"Tab"_s, u"Add Prompt"_s);
    press(u"Return"_s);
    settings->awaitText(u"Use {text} where the selected text should go. Without it, the selection is appended at the "
                        "end."_s);
    waitUntil([this] { return settings->focused().name() == u"Prompt name"_s; }, u"the name's field"_s);
    desktop->keyboard().type(u"Keys"_s);
    press(u"Tab"_s);
    desktop->keyboard().type(u"Do"_s);
    settings->pressUntilFocused(u"Tab"_s, u"Save"_s);
    press(u"space"_s);
    settings->awaitText(u"Keys"_s);

    settings->pressUntilFocused(u"Shift+Tab"_s, u"Prompts"_s);
    press(u"Down"_s);
    settings->awaitText(u"API keys and models for each AI provider"_s);
    settings->awaitText(u"No API key"_s);
    settings->pressUntilFocused(u"Tab"_s, u"API Key"_s, u"Gemini"_s);
    desktop->keyboard().type(u"by-hand"_s);
    press(u"Return"_s);
    settings->awaitText(u"Key saved"_s);
    settings->awaitNoText(u"No API key"_s);
    EXPECT_EQ(storedKey(u"gemini_api_key"_s), QByteArray("by-hand"));
    // The last section is far below what the window shows: the page follows the keyboard.
    settings->pressUntilFocused(u"Tab"_s, u"Model"_s, u"Grok (xAI)"_s);
    desktop->keyboard().type(u"grok-4"_s);
    awaitPreference(u"settings.model.xAI = \"grok-4\""_s);
    press(u"Ctrl+w"_s);
    desktop->windows().awaitNoWindow({.pid = program->process().pid()});
    EXPECT_TRUE(program->process().isRunning());
}

} // namespace orvesa::desktop
