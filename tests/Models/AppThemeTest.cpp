#include "Models/AppTheme.h"
#include "fakes/InterfaceLanguage.h"
#include "fakes/QtPrinting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orvesa {
namespace {

using namespace Qt::StringLiterals;
using ::testing::ElementsAre;

TEST(AppTheme, hasFiveCasesInOrder)
{
    EXPECT_THAT(allCases<AppTheme>(),
                ElementsAre(AppTheme::violet, AppTheme::ocean, AppTheme::forest, AppTheme::sunset, AppTheme::graphite));
}

TEST(AppTheme, comesFromTheExactLowerCaseRawValueOnly)
{
    EXPECT_EQ(fromRawValue<AppTheme>(u"violet"_s), AppTheme::violet);
    EXPECT_EQ(fromRawValue<AppTheme>(u"ocean"_s), AppTheme::ocean);
    EXPECT_EQ(fromRawValue<AppTheme>(u"forest"_s), AppTheme::forest);
    EXPECT_EQ(fromRawValue<AppTheme>(u"sunset"_s), AppTheme::sunset);
    EXPECT_EQ(fromRawValue<AppTheme>(u"graphite"_s), AppTheme::graphite);
    for (const QString &raw : {u"Violet"_s, u"VIOLET"_s, u" violet"_s, u""_s, u"red"_s}) {
        EXPECT_EQ(fromRawValue<AppTheme>(raw), std::nullopt) << raw.toStdString();
    }
}

TEST(AppTheme, hasItsBrandGradient)
{
    EXPECT_EQ(brandGradient(AppTheme::violet), (SRGBGradient{{0.65, 0.45, 1.0}, {0.35, 0.5, 1.0}}));
    EXPECT_EQ(brandGradient(AppTheme::ocean), (SRGBGradient{{0.25, 0.65, 1.0}, {0.1, 0.4, 0.9}}));
    EXPECT_EQ(brandGradient(AppTheme::forest), (SRGBGradient{{0.3, 0.85, 0.55}, {0.1, 0.55, 0.35}}));
    EXPECT_EQ(brandGradient(AppTheme::sunset), (SRGBGradient{{1.0, 0.6, 0.3}, {0.95, 0.3, 0.35}}));
    EXPECT_EQ(brandGradient(AppTheme::graphite), (SRGBGradient{{0.6, 0.63, 0.7}, {0.35, 0.38, 0.45}}));
}

TEST(AppTheme, hasItsSidebarGradient)
{
    EXPECT_EQ(sidebarGradient(AppTheme::violet), (SRGBGradient{{0.24, 0.16, 0.5}, {0.13, 0.1, 0.32}}));
    EXPECT_EQ(sidebarGradient(AppTheme::ocean), (SRGBGradient{{0.08, 0.24, 0.45}, {0.04, 0.12, 0.28}}));
    EXPECT_EQ(sidebarGradient(AppTheme::forest), (SRGBGradient{{0.09, 0.33, 0.22}, {0.04, 0.17, 0.12}}));
    EXPECT_EQ(sidebarGradient(AppTheme::sunset), (SRGBGradient{{0.48, 0.2, 0.13}, {0.26, 0.1, 0.11}}));
    EXPECT_EQ(sidebarGradient(AppTheme::graphite), (SRGBGradient{{0.23, 0.24, 0.27}, {0.11, 0.12, 0.14}}));
}

TEST(AppTheme, takesItsAccentFromTheEndOfTheBrandGradient)
{
    EXPECT_EQ(accent(AppTheme::sunset), (SRGBColor{0.95, 0.3, 0.35}));
    for (const AppTheme theme : allCases<AppTheme>()) {
        EXPECT_EQ(accent(theme), brandGradient(theme).end);
    }
}

TEST(AppTheme, isShownInTheInterfaceLanguage)
{
    EXPECT_EQ(displayText(AppTheme::violet), u"Violet"_s);
    EXPECT_EQ(displayText(AppTheme::ocean), u"Ocean"_s);
    EXPECT_EQ(displayText(AppTheme::forest), u"Forest"_s);
    EXPECT_EQ(displayText(AppTheme::sunset), u"Sunset"_s);
    EXPECT_EQ(displayText(AppTheme::graphite), u"Graphite"_s);
    const InterfaceLanguage chinese(AppLanguage::traditionalChinese);
    EXPECT_EQ(displayText(AppTheme::sunset), u"夕陽橘"_s);
}

} // namespace
} // namespace orvesa
