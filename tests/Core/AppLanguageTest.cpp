#include "Core/AppLanguage.h"
#include "fakes/QtPrinting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orvesa {
namespace {

using namespace Qt::StringLiterals;
using ::testing::ElementsAre;

TEST(AppLanguage, hasItsCasesInOrderWithTheirTags)
{
    EXPECT_THAT(allCases<AppLanguage>(),
                ElementsAre(AppLanguage::traditionalChinese, AppLanguage::japanese, AppLanguage::english));
    EXPECT_EQ(rawValue(AppLanguage::traditionalChinese), u"zh-Hant"_s);
    EXPECT_EQ(rawValue(AppLanguage::japanese), u"ja"_s);
    EXPECT_EQ(rawValue(AppLanguage::english), u"en"_s);
    EXPECT_EQ(fromRawValue<AppLanguage>(u"zh-Hant"_s), AppLanguage::traditionalChinese);
    EXPECT_EQ(fromRawValue<AppLanguage>(u"zh-hant"_s), std::nullopt);
    EXPECT_EQ(fromRawValue<AppLanguage>(u"EN"_s), std::nullopt);
}

TEST(SystemDefaultLanguage, skipsLanguagesThatAreNotOurs)
{
    EXPECT_EQ(systemDefaultLanguage({u"zh-Hans-CN"_s, u"ja-JP"_s}), AppLanguage::japanese);
    EXPECT_EQ(systemDefaultLanguage({u"fr-FR"_s, u"zh-CN"_s, u"zh-Hant-HK"_s}), AppLanguage::traditionalChinese);
}

TEST(SystemDefaultLanguage, isTraditionalChineseForItsScriptAndItsRegions)
{
    for (const QString &tag : {u"zh-Hant-TW"_s, u"zh-Hant"_s, u"zh-HK"_s, u"zh-TW"_s, u"ZH-HANT-MO"_s, u"zh-tw"_s}) {
        EXPECT_EQ(systemDefaultLanguage({tag}), AppLanguage::traditionalChinese) << tag.toStdString();
    }
}

TEST(SystemDefaultLanguage, isEnglishWhenNothingMatches)
{
    EXPECT_EQ(systemDefaultLanguage({u"de-DE"_s}), AppLanguage::english);
    EXPECT_EQ(systemDefaultLanguage({u"zh"_s}), AppLanguage::english);
    EXPECT_EQ(systemDefaultLanguage({u"zh-Hans-TW"_s}), AppLanguage::english);
    EXPECT_EQ(systemDefaultLanguage({u""_s, u"x-ja"_s}), AppLanguage::english);
    EXPECT_EQ(systemDefaultLanguage({}), AppLanguage::english);
}

TEST(SystemDefaultLanguage, takesTheFirstThatIsOurs)
{
    EXPECT_EQ(systemDefaultLanguage({u"en-GB"_s, u"ja-JP"_s}), AppLanguage::english);
    EXPECT_EQ(systemDefaultLanguage({u"ja"_s, u"en-GB"_s}), AppLanguage::japanese);
    EXPECT_EQ(systemDefaultLanguage({u"JA-JP"_s, u"zh-TW"_s}), AppLanguage::japanese);
}

} // namespace
} // namespace orvesa
