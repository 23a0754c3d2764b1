// The settings window's views over fakes: what is stated about sizes, texts and states, and that they follow changes.

#include "App/Settings/SettingsView.h"

#include "App/Settings/ProviderSettingsSection.h"
#include "App/Settings/SettingsCard.h"
#include "App/Settings/SettingsSidebar.h"
#include "App/Settings/SettingsWindowController.h"
#include "App/Settings/SidebarItem.h"
#include "App/SettingsFixture.h"
#include "Core/AccessibilityPermissionService.h"
#include "UI/Capsule.h"
#include "UI/HotKeyRecorderView.h"
#include "UI/LinkButton.h"
#include "UI/Picker.h"
#include "UI/SecretField.h"
#include "UI/StatusLabel.h"
#include "UI/Switch.h"
#include "UI/SymbolButton.h"
#include "UI/TextButton.h"
#include "UI/ThemeSwatch.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QMainWindow>
#include <QMenu>
#include <QScrollArea>
#include <QScrollBar>

using namespace Qt::StringLiterals;

namespace orvesa {
namespace {

class SettingsViewTest : public testing::Test, protected SettingsOnFakes {
protected:
    SettingsViewTest() { settings.setAppLanguage(AppLanguage::english); }

    void open(SettingsSection section = SettingsSection::general)
    {
        controller = std::make_unique<SettingsWindowController>(services());
        controller->showWindow();
        view().setSelection(section);
        settle();
    }

    /// Layouts inside layouts tell each other of their sizes through the event loop.
    static void settle()
    {
        for (int level = 0; level < 10; ++level) {
            QCoreApplication::sendPostedEvents();
            QCoreApplication::processEvents();
        }
    }

    [[nodiscard]] SettingsView &view() const { return controller->view(); }
    [[nodiscard]] SidebarItem &item(SettingsSection section) const { return view().sidebar().item(section); }

    [[nodiscard]] QStringList shownTexts() const
    {
        QStringList texts;
        const auto labels = view().findChildren<QLabel *>();
        for (const QLabel *label : labels) {
            if (label->isVisible() && !label->text().isEmpty()) {
                texts.append(label->text());
            }
        }
        return texts;
    }

    template <typename Widget>
    [[nodiscard]] Widget *named(const QString &name, const QString &description = {}) const
    {
        const auto found = view().findChildren<Widget *>();
        for (Widget *widget : found) {
            if (widget->isVisible() && (widget->accessibleName() == name || textOf(*widget) == name) &&
                (description.isEmpty() || widget->accessibleDescription() == description)) {
                return widget;
            }
        }
        return nullptr;
    }

    [[nodiscard]] static QString textOf(const QWidget &widget)
    {
        const auto *button = qobject_cast<const QAbstractButton *>(&widget);
        return button == nullptr ? QString() : button->text();
    }

    std::unique_ptr<SettingsWindowController> controller;
};

TEST_F(SettingsViewTest, HasTheStatedSizes)
{
    open();
    const QMainWindow &window = controller->window();
    EXPECT_EQ(window.windowTitle(), u"Orvesa Translate Settings"_s);
    EXPECT_EQ(window.minimumSize(), QSize(780, 560));
    EXPECT_EQ(window.maximumSize(), QSize(780, 560));
    EXPECT_FALSE(window.windowFlags().testFlag(Qt::WindowMaximizeButtonHint));
    EXPECT_EQ(view().size(), QSize(780, 560));
    EXPECT_EQ(view().sidebar().geometry(), QRect(0, 0, 208, 560));
    EXPECT_EQ(view().page().mapTo(view().findChild<QScrollArea *>()->widget(), QPoint()).x(), 26);
    EXPECT_EQ(view().page().width(), 780 - 208 - 2 * 26);
    for (const SettingsCard *card : view().findChildren<SettingsCard *>()) {
        EXPECT_EQ(card->width(), view().page().width());
    }
    EXPECT_TRUE(shownTexts().contains(u"v1.0.0"_s));
}

TEST_F(SettingsViewTest, StartsWithTheGeneralPageAndKeepsTheSectionWhenItIsReopened)
{
    open();
    EXPECT_EQ(view().selection(), SettingsSection::general);
    EXPECT_TRUE(item(SettingsSection::general).isSelected());
    item(SettingsSection::prompts).click();
    EXPECT_EQ(view().selection(), SettingsSection::prompts);
    EXPECT_TRUE(item(SettingsSection::prompts).isSelected());
    EXPECT_FALSE(item(SettingsSection::general).isSelected());
    controller->window().close();
    controller->showWindow();
    EXPECT_EQ(view().selection(), SettingsSection::prompts);
    EXPECT_TRUE(shownTexts().contains(u"Your own prompts, runnable on any selected text"_s));
}

TEST_F(SettingsViewTest, TheBadgeStandsWithTheProvidersWhileThereIsNoKey)
{
    open();
    EXPECT_TRUE(item(SettingsSection::providers).showsNoKeyBadge());
    for (const SettingsSection other :
         {SettingsSection::general, SettingsSection::shortcuts, SettingsSection::prompts}) {
        EXPECT_FALSE(item(other).showsNoKeyBadge());
    }
    const auto *badge = item(SettingsSection::providers).findChild<Capsule *>();
    EXPECT_EQ(badge->text(), u"No API key"_s);
    EXPECT_EQ(badge->width(), badge->fontMetrics().horizontalAdvance(badge->text()) + 2 * 6);
    EXPECT_EQ(badge->height(), badge->fontMetrics().height() + 2 * 2);
    EXPECT_TRUE(item(SettingsSection::providers).rect().contains(badge->geometry()));

    keyStore.setItem(u"current"_s, u"xai_api_key"_s, "secret");
    controller->window().close();
    controller->showWindow(); // each appearance of the sidebar looks anew
    EXPECT_FALSE(item(SettingsSection::providers).showsNoKeyBadge());
}

TEST_F(SettingsViewTest, AnEarlierIdentitysKeyIsUsableOnceTheWindowIsOpen)
{
    keyStore.setItem(u"second-legacy"_s, u"anthropic_api_key"_s, "old");
    open();
    EXPECT_FALSE(item(SettingsSection::providers).showsNoKeyBadge());
    EXPECT_EQ(keyStore.item(u"current"_s, u"anthropic_api_key"_s), QByteArray("old"));
}

TEST_F(SettingsViewTest, NoBadgeIsShownBeforeTheKeyStoreHasAnswered)
{
    keyStore.gate().close();
    open();
    EXPECT_FALSE(item(SettingsSection::providers).showsNoKeyBadge());
    keyStore.gate().open();
    EXPECT_TRUE(item(SettingsSection::providers).showsNoKeyBadge());
}

TEST_F(SettingsViewTest, EveryPageFollowsTheInterfaceLanguage)
{
    struct Row {
        SettingsSection section;
        QStringList japanese;
    };
    const std::vector<Row> rows{
        {SettingsSection::general, {u"アプリの言語"_s, u"権限"_s, u"言語・プロバイダ・権限の設定"_s}},
        {SettingsSection::shortcuts, {u"グローバルショートカット"_s, u"OCR 翻訳"_s}},
        {SettingsSection::prompts,
         {u"プロンプト"_s, u"カスタムプロンプトはまだありません。「プロンプトを追加」で作成してください。"_s}},
        {SettingsSection::providers, {u"API キー"_s, u"モデル"_s}},
    };
    for (const Row &row : rows) {
        settings.setAppLanguage(AppLanguage::english);
        open(row.section);
        settings.setAppLanguage(AppLanguage::japanese);
        for (const QString &text : row.japanese) {
            EXPECT_TRUE(shownTexts().contains(text)) << text.toStdString();
        }
        EXPECT_EQ(item(SettingsSection::general).text(), u"一般"_s);
        EXPECT_EQ(item(SettingsSection::providers).findChild<Capsule *>()->text(), u"未設定"_s);
        EXPECT_TRUE(shownTexts().contains(u"設定"_s));
    }
    settings.setAppLanguage(AppLanguage::english);
}

TEST_F(SettingsViewTest, TheLanguagePickerNamesEachLanguageInItsOwnWords)
{
    open();
    for (const AppLanguage language : {AppLanguage::japanese, AppLanguage::traditionalChinese, AppLanguage::english}) {
        settings.setAppLanguage(language);
        const auto *picker = view().findChildren<Picker *>().first();
        QStringList choices;
        for (int index = 0; index < picker->count(); ++index) {
            choices.append(picker->itemText(index));
        }
        EXPECT_EQ(choices, (QStringList{u"繁體中文"_s, u"日本語"_s, u"English"_s}));
        EXPECT_EQ(picker->currentIndex(), static_cast<int>(language));
    }
}

TEST_F(SettingsViewTest, EachPickerWritesItsSettingAtOnceAndFollowsIt)
{
    open();
    const auto pickers = view().findChildren<Picker *>();
    ASSERT_EQ(pickers.size(), 4);
    Q_EMIT pickers[1]->activated(static_cast<int>(AIProviderType::xAI));
    EXPECT_EQ(settings.defaultProvider(), AIProviderType::xAI);
    Q_EMIT pickers[2]->activated(static_cast<int>(TargetLanguage::english));
    EXPECT_EQ(settings.targetLanguage(), TargetLanguage::english);
    Q_EMIT pickers[3]->activated(static_cast<int>(PolishMode::concise));
    EXPECT_EQ(settings.polishMode(), PolishMode::concise);
    settings.setDefaultProvider(AIProviderType::anthropic);
    EXPECT_EQ(pickers[1]->currentText(), u"Claude (Anthropic)"_s);
    defaults.changeFromOutside(u"settings.polishMode"_s, DefaultsValue(u"naturalJapanese"_s));
    EXPECT_EQ(pickers[3]->currentText(), u"Natural Japanese"_s);
    Q_EMIT pickers[0]->activated(static_cast<int>(AppLanguage::japanese));
    EXPECT_EQ(settings.appLanguage(), AppLanguage::japanese);
    EXPECT_EQ(pickers[3]->currentText(), u"自然な日本語"_s);
    settings.setAppLanguage(AppLanguage::english);
}

TEST_F(SettingsViewTest, TheSwitchTurnsThinkingOn)
{
    open();
    auto *thinking = view().findChild<Switch *>();
    EXPECT_EQ(thinking->accessibleName(), u"Thinking Mode"_s);
    thinking->click();
    EXPECT_TRUE(settings.thinkingEnabled());
    settings.setThinkingEnabled(false);
    EXPECT_FALSE(thinking->isChecked());
}

TEST_F(SettingsViewTest, TheSwatchesChooseTheThemeAndTheChosenOneChangesNothing)
{
    open();
    const auto swatches = view().findChildren<ThemeSwatch *>();
    ASSERT_EQ(swatches.size(), 5);
    for (int index = 0; index < 5; ++index) {
        EXPECT_EQ(static_cast<int>(swatches[index]->theme()), index);
    }
    EXPECT_EQ(swatches[4]->text(), u"Graphite"_s);
    EXPECT_TRUE(swatches[0]->isChecked());
    const std::size_t writes = defaults.writes().size();
    swatches[0]->click();
    EXPECT_EQ(defaults.writes().size(), writes);
    swatches[3]->click();
    EXPECT_EQ(settings.theme(), AppTheme::sunset);
    EXPECT_TRUE(swatches[3]->isChecked());
    EXPECT_FALSE(swatches[0]->isChecked());
    settings.setTheme(AppTheme::ocean);
    EXPECT_TRUE(swatches[1]->isChecked());
}

TEST_F(SettingsViewTest, TellsOfThePermissionAndShowsTheWayWhereItIsMissing)
{
    open();
    EXPECT_TRUE(shownTexts().contains(u"Accessibility permission granted"_s));
    EXPECT_EQ(named<TextButton>(u"Open System Settings"_s), nullptr);
    trust.setTrust(FakeAccessibilityTrust::Trust::missing);
    settings.setThinkingEnabled(true); // any change draws the page anew
    EXPECT_TRUE(shownTexts().contains(u"Accessibility permission not granted"_s));
    auto *button = named<TextButton>(u"Open System Settings"_s);
    ASSERT_NE(button, nullptr);
    button->click();
    FakeWorkspace expected;
    AccessibilityPermissionService::openSystemSettings(expected);
    EXPECT_EQ(workspace.opened(), expected.opened());
    trust.setTrust(FakeAccessibilityTrust::Trust::granted);
    QEvent activation(QEvent::WindowActivate);
    QCoreApplication::sendEvent(&view().page(), &activation);
    EXPECT_TRUE(shownTexts().contains(u"Accessibility permission granted"_s));
}

TEST_F(SettingsViewTest, RecordingShowsInTheRowAndTheResetButtonBringsTheDefaultBack)
{
    open(SettingsSection::shortcuts);
    const auto recorders = view().findChildren<HotKeyRecorderView *>();
    ASSERT_EQ(recorders.size(), 3);
    recorders[0]->click();
    keyMonitor.press(17, FakeKeyMonitor::command | FakeKeyMonitor::shift, u"T"_s);
    EXPECT_EQ(recorders[0]->shownText(), u"⇧⌘T"_s);
    auto *reset = named<SymbolButton>(u"Reset to default (⌥D)"_s);
    ASSERT_NE(reset, nullptr);
    EXPECT_EQ(reset->toolTip(), u"Reset to default (⌥D)"_s);
    reset->click();
    EXPECT_EQ(recorders[0]->shownText(), u"⌥D"_s);
    EXPECT_FALSE(settings.isCustomized(HotKeyAction::translateSelection));
}

TEST_F(SettingsViewTest, ARefusedShortcutIsExplainedUnderTheRows)
{
    open(SettingsSection::shortcuts);
    const auto recorders = view().findChildren<HotKeyRecorderView *>();
    recorders[0]->click();
    keyMonitor.press(1, FakeKeyMonitor::option, u"s"_s);
    EXPECT_TRUE(shownTexts().contains(u"⌥S is already used by another action."_s));
    EXPECT_EQ(settings.combo(HotKeyAction::translateSelection).displayText(), u"⌥D"_s);
    keyMonitor.press(17, 0, u"t"_s);
    EXPECT_TRUE(shownTexts().contains(u"Shortcuts must include ⌘, ⌥ or ⌃ (function keys excepted)."_s));
    keyMonitor.press(53, 0, {});
    recorders[1]->click();
    EXPECT_FALSE(shownTexts().contains(u"Shortcuts must include ⌘, ⌥ or ⌃ (function keys excepted)."_s));
}

TEST_F(SettingsViewTest, LeavingThePageEndsRecording)
{
    open(SettingsSection::shortcuts);
    view().findChildren<HotKeyRecorderView *>().first()->click();
    EXPECT_TRUE(recording.isRecording());
    view().setSelection(SettingsSection::general);
    EXPECT_FALSE(recording.isRecording());
    EXPECT_FALSE(keyMonitor.isMonitored());
}

TEST_F(SettingsViewTest, ClosingTheWindowEndsRecordingAndTakesTheFeedbackAway)
{
    open(SettingsSection::shortcuts);
    view().findChildren<HotKeyRecorderView *>().first()->click();
    keyMonitor.press(17, 0, u"t"_s);
    controller->window().close();
    EXPECT_FALSE(recording.isRecording());
    controller->showWindow();
    EXPECT_FALSE(shownTexts().contains(u"Shortcuts must include ⌘, ⌥ or ⌃ (function keys excepted)."_s));
}

TEST_F(SettingsViewTest, EachServiceHasItsSectionWithItsLinkAndDefaultModel)
{
    open(SettingsSection::providers);
    const auto sections = view().findChildren<ProviderSettingsSection *>();
    ASSERT_EQ(sections.size(), 4);
    for (int index = 0; index < 4; ++index) {
        const auto type = static_cast<AIProviderType>(index);
        EXPECT_EQ(sections[index]->model().type(), type);
        auto *link = sections[index]->findChild<LinkButton *>();
        EXPECT_EQ(link->text(), u"Get API Key"_s);
        EXPECT_EQ(link->toolTip(), apiKeyURL(type).toString());
        link->click();
        EXPECT_EQ(workspace.opened().last(), apiKeyURL(type));
        EXPECT_EQ(sections[index]->findChildren<QLineEdit *>().last()->placeholderText(), defaultModel(type));
    }
}

TEST_F(SettingsViewTest, TheModelMenuListsTheModelsAndTheDefault)
{
    open(SettingsSection::providers);
    auto *section = view().findChildren<ProviderSettingsSection *>().first();
    const auto *field = section->findChildren<QLineEdit *>().last();
    const auto openMenu = [section] {
        section->findChild<SymbolButton *>()->click();
        return section->findChildren<QMenu *>().last();
    };
    QMenu *menu = openMenu();
    QStringList titles;
    for (const QAction *action : menu->actions()) {
        titles.append(action->isSeparator() ? u"-"_s : action->text());
    }
    EXPECT_EQ(titles, (QStringList{u"gpt-5.4-mini"_s, u"gpt-5.4-nano"_s, u"gpt-5.4"_s, u"gpt-5.5"_s, u"-"_s,
                                   u"Use default (gpt-5.4-mini)"_s}));
    menu->actions().at(3)->trigger();
    EXPECT_EQ(field->text(), u"gpt-5.5"_s);
    EXPECT_EQ(settings.storedModel(AIProviderType::openAI), u"gpt-5.5"_s);
    menu->close();
    openMenu()->actions().last()->trigger();
    EXPECT_EQ(field->text(), QString());
    EXPECT_EQ(settings.storedModel(AIProviderType::openAI), std::nullopt);
}

TEST_F(SettingsViewTest, TheKeysFieldGivesItsTextToNobody)
{
    open(SettingsSection::providers);
    auto *field = view().findChild<SecretField *>();
    EXPECT_EQ(field->placeholderText(), u"Enter API key"_s);
    field->insert(u"zebra"_s);
    QApplication::clipboard()->setText(u"kept"_s);
    field->selectAll();
    field->copy();
    field->cut();
    EXPECT_EQ(QApplication::clipboard()->text(), u"kept"_s);
    field->setText(u"zebra"_s);
    field->wipe();
    field->undo();
    EXPECT_EQ(field->text(), QString());
    EXPECT_TRUE(field->inputMethodHints().testFlag(Qt::ImhSensitiveData));
}

TEST_F(SettingsViewTest, ASavedKeyIsWipedFromItsField)
{
    open(SettingsSection::providers);
    auto *field = view().findChild<SecretField *>();
    field->insert(u"zebra"_s);
    Q_EMIT field->textEdited(field->text());
    auto *save = named<TextButton>(u"Save"_s, u"OpenAI"_s);
    EXPECT_TRUE(save->isEnabled());
    save->click();
    EXPECT_EQ(keyStore.item(u"current"_s, u"openai_api_key"_s), QByteArray("zebra"));
    EXPECT_EQ(field->text(), QString());
    field->undo();
    EXPECT_EQ(field->text(), QString());
    EXPECT_EQ(field->placeholderText(), u"•••••••• (saved in Keychain)"_s);
    EXPECT_TRUE(shownTexts().contains(u"Key saved"_s));
    EXPECT_FALSE(item(SettingsSection::providers).showsNoKeyBadge());
}

TEST_F(SettingsViewTest, LeavingThePageWhileAKeyIsTestedTouchesNothing)
{
    keyStore.setItem(u"current"_s, u"openai_api_key"_s, "stored");
    open(SettingsSection::providers);
    providers.gate().close();
    named<TextButton>(u"Test"_s, u"OpenAI"_s)->click();
    EXPECT_TRUE(shownTexts().contains(u"Testing API key…"_s));
    view().setSelection(SettingsSection::general);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(providers.calls()[0].stop.stop_requested());
    providers.gate().open();
    view().setSelection(SettingsSection::providers);
    EXPECT_FALSE(shownTexts().contains(u"Testing API key…"_s));
}

TEST_F(SettingsViewTest, ClosingTheWindowForgetsATypedKey)
{
    open(SettingsSection::providers);
    auto *field = view().findChild<SecretField *>();
    field->insert(u"zebra"_s);
    Q_EMIT field->textEdited(field->text());
    controller->window().close();
    controller->showWindow();
    EXPECT_EQ(view().findChild<SecretField *>()->text(), QString());
}

TEST_F(SettingsViewTest, MarkupInTextsFromOutsideIsText)
{
    keyStore.setItem(u"current"_s, u"openai_api_key"_s, "stored");
    open(SettingsSection::providers);
    providers.setRefusal(u"<b>no</b>"_s);
    named<TextButton>(u"Test"_s, u"OpenAI"_s)->click();
    EXPECT_TRUE(shownTexts().contains(u"✗ API request failed: <b>no</b>"_s));
    for (const QLabel *label : view().findChildren<QLabel *>()) {
        EXPECT_EQ(label->textFormat(), Qt::PlainText);
    }
}

TEST_F(SettingsViewTest, EveryControlHasANameAndAFocusOrder)
{
    trust.setTrust(FakeAccessibilityTrust::Trust::missing);
    settings.setCustomPrompts({prompt(u"One"_s, u"1"_s)});
    for (const SettingsSection section : allSettingsSections) {
        open(section);
        for (const QWidget *widget : view().findChildren<QWidget *>()) {
            if (!widget->isVisible() || !(widget->focusPolicy() & Qt::TabFocus)) {
                continue;
            }
            EXPECT_FALSE(widget->accessibleName().isEmpty() && textOf(*widget).isEmpty())
                << widget->metaObject()->className();
        }
    }
}

} // namespace
} // namespace orvesa
