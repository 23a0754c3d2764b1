// The settings window's frame over fakes: what is stated about sizes, texts and states, and that it follows changes.

#include "App/SettingsViewFixture.h"

#include "App/Settings/SettingsCard.h"
#include "UI/Capsule.h"
#include "UI/TextButton.h"

#include <QLabel>
#include <QMainWindow>
#include <QScrollArea>

using namespace Qt::StringLiterals;

namespace orvesa {

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

} // namespace orvesa
