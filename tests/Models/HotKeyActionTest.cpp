#include "Models/HotKeyAction.h"
#include "fakes/QtPrinting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orvesa {
namespace {

using namespace Qt::StringLiterals;
using ::testing::ElementsAre;

TEST(HotKeyAction, hasItsCasesInOrder)
{
    EXPECT_THAT(allCases<HotKeyAction>(), ElementsAre(HotKeyAction::translateSelection, HotKeyAction::polishSelection,
                                                      HotKeyAction::ocrTranslate));
}

TEST(HotKeyAction, comesFromTheExactRawValueOnly)
{
    EXPECT_EQ(fromRawValue<HotKeyAction>(u"translateSelection"_s), HotKeyAction::translateSelection);
    EXPECT_EQ(fromRawValue<HotKeyAction>(u"polishSelection"_s), HotKeyAction::polishSelection);
    EXPECT_EQ(fromRawValue<HotKeyAction>(u"ocrTranslate"_s), HotKeyAction::ocrTranslate);
    for (const QString &raw : {u"OCRTranslate"_s, u"TranslateSelection"_s, u"translateSelection "_s, u""_s}) {
        EXPECT_EQ(fromRawValue<HotKeyAction>(raw), std::nullopt) << raw.toStdString();
    }
}

TEST(HotKeyAction, hasItsDefaultShortcut)
{
    EXPECT_EQ(defaultCombo(HotKeyAction::translateSelection), (KeyCombo{2, 0x800, u"D"_s}));
    EXPECT_EQ(defaultCombo(HotKeyAction::polishSelection), (KeyCombo{1, 0x800, u"S"_s}));
    EXPECT_EQ(defaultCombo(HotKeyAction::ocrTranslate), (KeyCombo{0, 0x800, u"A"_s}));
    EXPECT_EQ(defaultCombo(HotKeyAction::translateSelection).displayText(), u"⌥D"_s);
}

TEST(HotKeyAction, isNumberedFromOne)
{
    EXPECT_EQ(hotKeyIdentifier(HotKeyAction::translateSelection), 1U);
    EXPECT_EQ(hotKeyIdentifier(HotKeyAction::polishSelection), 2U);
    EXPECT_EQ(hotKeyIdentifier(HotKeyAction::ocrTranslate), 3U);
}

TEST(HotKeyAction, hasItsIconGradient)
{
    EXPECT_EQ(iconGradient(HotKeyAction::translateSelection), (SRGBGradient{{0.3, 0.65, 1.0}, {0.2, 0.45, 0.95}}));
    EXPECT_EQ(iconGradient(HotKeyAction::polishSelection), (SRGBGradient{{0.85, 0.45, 1.0}, {0.6, 0.3, 0.95}}));
    EXPECT_EQ(iconGradient(HotKeyAction::ocrTranslate), (SRGBGradient{{0.2, 0.8, 0.75}, {0.1, 0.55, 0.6}}));
}

TEST(HotKeyAction, isTitledLikeItsMenuItem)
{
    EXPECT_EQ(menuTitleKey(HotKeyAction::translateSelection), L10nKey::menuTranslateSelection);
    EXPECT_EQ(menuTitleKey(HotKeyAction::polishSelection), L10nKey::menuPolishSelection);
    EXPECT_EQ(menuTitleKey(HotKeyAction::ocrTranslate), L10nKey::menuOCRTranslate);
}

} // namespace
} // namespace orvesa
