#include "App/Settings/SettingsSection.h"
#include "App/Settings/ShortcutsSettingsViewModel.h"
#include "App/SettingsFixture.h"
#include "Core/Localization.h"
#include "fakes/SignalCount.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace orvesa {
namespace {

class ShortcutsSettingsTest : public testing::Test, protected SettingsOnFakes {
protected:
    ShortcutsSettingsViewModel model{settings};
};

const KeyCombo commandShiftT{17, CarbonModifier::command | CarbonModifier::shift, u"T"_s};

TEST_F(ShortcutsSettingsTest, NothingIsCustomizedAtFirst)
{
    for (const HotKeyAction action : allCases<HotKeyAction>()) {
        EXPECT_FALSE(model.isCustomized(action));
    }
    EXPECT_EQ(model.feedbackMessage(), std::nullopt);
}

TEST_F(ShortcutsSettingsTest, TheTooltipNamesTheDefaultWhateverIsSet)
{
    EXPECT_EQ(ShortcutsSettingsViewModel::resetHelp(HotKeyAction::translateSelection), u"Reset to default (⌥D)"_s);
    settings.setCombo(commandShiftT, HotKeyAction::translateSelection);
    EXPECT_TRUE(model.isCustomized(HotKeyAction::translateSelection));
    EXPECT_EQ(ShortcutsSettingsViewModel::resetHelp(HotKeyAction::translateSelection), u"Reset to default (⌥D)"_s);
    EXPECT_EQ(ShortcutsSettingsViewModel::resetHelp(HotKeyAction::polishSelection), u"Reset to default (⌥S)"_s);
    EXPECT_EQ(ShortcutsSettingsViewModel::resetHelp(HotKeyAction::ocrTranslate), u"Reset to default (⌥A)"_s);
}

TEST_F(ShortcutsSettingsTest, ResetTakesTheOverrideOutOfWhatIsStored)
{
    settings.setCombo(commandShiftT, HotKeyAction::translateSelection);
    settings.setCombo({35, CarbonModifier::option, u"P"_s}, HotKeyAction::polishSelection);
    model.reset(HotKeyAction::translateSelection);
    EXPECT_EQ(settings.combo(HotKeyAction::translateSelection), defaultCombo(HotKeyAction::translateSelection));
    EXPECT_FALSE(model.isCustomized(HotKeyAction::translateSelection));
    EXPECT_TRUE(model.isCustomized(HotKeyAction::polishSelection));
    const SettingsStore restarted(defaults, languages);
    EXPECT_FALSE(restarted.isCustomized(HotKeyAction::translateSelection));
    EXPECT_TRUE(restarted.isCustomized(HotKeyAction::polishSelection));
}

TEST_F(ShortcutsSettingsTest, ResetOfADefaultWritesNothing)
{
    const std::size_t writes = defaults.writes().size();
    const SignalCount changes(&settings, &SettingsStore::hotKeyOverridesChanged);
    model.reset(HotKeyAction::ocrTranslate);
    EXPECT_EQ(defaults.writes().size(), writes);
    EXPECT_EQ(changes.size(), 0);
}

TEST_F(ShortcutsSettingsTest, FeedbackChangesAreTold)
{
    const SignalCount changes(&model, &ShortcutsSettingsViewModel::feedbackChanged);
    model.setFeedbackMessage(u"used"_s);
    model.setFeedbackMessage(u"used"_s);
    model.setFeedbackMessage(std::nullopt);
    EXPECT_EQ(changes.size(), 2);
}

TEST_F(ShortcutsSettingsTest, EachActionHasItsSymbolTitleAndSubtitle)
{
    EXPECT_EQ(ShortcutsSettingsViewModel::symbolName(HotKeyAction::translateSelection), u"globe"_s);
    EXPECT_EQ(ShortcutsSettingsViewModel::symbolName(HotKeyAction::polishSelection), u"wand.and.stars"_s);
    EXPECT_EQ(ShortcutsSettingsViewModel::symbolName(HotKeyAction::ocrTranslate), u"text.viewfinder"_s);
    EXPECT_EQ(ShortcutsSettingsViewModel::title(HotKeyAction::ocrTranslate), u"OCR Translate"_s);
    EXPECT_EQ(ShortcutsSettingsViewModel::subtitle(HotKeyAction::translateSelection),
              u"Translate the selected text into your target language"_s);
    EXPECT_EQ(ShortcutsSettingsViewModel::subtitle(HotKeyAction::polishSelection),
              u"Rewrite the selected text with the chosen polish mode"_s);
    EXPECT_EQ(ShortcutsSettingsViewModel::subtitle(HotKeyAction::ocrTranslate),
              u"Capture a screen area and translate the recognized text"_s);
}

TEST(SettingsSection, HasItsTextsSymbolsAndColoursInOrder)
{
    struct Row {
        L10nKey title;
        L10nKey subtitle;
        QString symbol;
        SRGBColor end;
    };
    const std::array<Row, 4> rows{{
        {L10nKey::sectionGeneral, L10nKey::sectionGeneralSubtitle, u"gearshape.fill"_s, {0.35, 0.4, 0.52}},
        {L10nKey::sectionShortcuts, L10nKey::sectionShortcutsSubtitle, u"command"_s, {0.3, 0.35, 0.95}},
        {L10nKey::sectionPrompts, L10nKey::sectionPromptsSubtitle, u"quote.bubble.fill"_s, {0.15, 0.55, 0.45}},
        {L10nKey::sectionProviders, L10nKey::sectionProvidersSubtitle, u"key.fill"_s, {0.95, 0.42, 0.25}},
    }};
    for (std::size_t index = 0; index < rows.size(); ++index) {
        const SettingsSection section = allSettingsSections.at(index);
        EXPECT_EQ(static_cast<std::size_t>(section), index);
        EXPECT_EQ(titleKey(section), rows.at(index).title);
        EXPECT_EQ(subtitleKey(section), rows.at(index).subtitle);
        EXPECT_EQ(symbolName(section), rows.at(index).symbol);
        EXPECT_EQ(iconGradient(section).end, rows.at(index).end);
    }
    EXPECT_EQ(iconGradient(SettingsSection::providers).start, (SRGBColor{1.0, 0.62, 0.3}));
}

} // namespace
} // namespace orvesa
