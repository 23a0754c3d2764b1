// The page for general preferences, over fakes.

#include "App/SettingsViewFixture.h"

#include "Core/AccessibilityPermissionService.h"
#include "UI/FontFamilies.h"
#include "UI/Picker.h"
#include "UI/Switch.h"
#include "UI/TextButton.h"
#include "UI/ThemeSwatch.h"

#include <QFontInfo>
#include <QGuiApplication>

using namespace Qt::StringLiterals;

namespace orvesa {

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

TEST_F(SettingsViewTest, TheLanguagePickerDrawsEachLanguageInItsOwnShapes)
{
    open();
    const QString desktop = QFontInfo(QGuiApplication::font()).family();
    for (const AppLanguage shown : {AppLanguage::japanese, AppLanguage::traditionalChinese, AppLanguage::english}) {
        settings.setAppLanguage(shown);
        const auto *picker = view().findChildren<Picker *>().first();
        for (const AppLanguage named : allCases<AppLanguage>()) {
            EXPECT_EQ(picker->itemData(static_cast<int>(named), Qt::FontRole).value<QFont>().families(),
                      FontFamilies::forInterface(desktop, textLanguage(named)))
                << rawValue(named).toStdString() << " in " << rawValue(shown).toStdString();
        }
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

} // namespace orvesa
