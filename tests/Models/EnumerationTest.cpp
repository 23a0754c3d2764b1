#include "Models/PolishMode.h"
#include "Models/TargetLanguage.h"
#include "fakes/InterfaceLanguage.h"
#include "fakes/QtPrinting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orvesa {
namespace {

using namespace Qt::StringLiterals;
using ::testing::ElementsAre;

TEST(TargetLanguage, hasItsCasesInTheOrderOfThePickers)
{
    EXPECT_THAT(allCases<TargetLanguage>(),
                ElementsAre(TargetLanguage::traditionalChinese, TargetLanguage::japanese, TargetLanguage::english));
}

TEST(TargetLanguage, hasEnglishNamesAsRawValues)
{
    EXPECT_EQ(rawValue(TargetLanguage::traditionalChinese), u"Traditional Chinese"_s);
    EXPECT_EQ(rawValue(TargetLanguage::japanese), u"Japanese"_s);
    EXPECT_EQ(rawValue(TargetLanguage::english), u"English"_s);
    for (const TargetLanguage language : allCases<TargetLanguage>()) {
        EXPECT_EQ(fromRawValue<TargetLanguage>(rawValue(language)), language);
    }
}

TEST(TargetLanguage, isAbsentForAnUnknownRawValue)
{
    for (const QString &raw : {u""_s, u"japanese"_s, u"Japanese "_s, u"French"_s, u"zh-Hant"_s}) {
        EXPECT_EQ(fromRawValue<TargetLanguage>(raw), std::nullopt) << raw.toStdString();
    }
}

TEST(TargetLanguage, isShownInTheInterfaceLanguage)
{
    EXPECT_EQ(displayText(TargetLanguage::traditionalChinese), u"Traditional Chinese"_s);
    EXPECT_EQ(displayText(TargetLanguage::japanese), u"Japanese"_s);
    EXPECT_EQ(displayText(TargetLanguage::english), u"English"_s);
    const InterfaceLanguage chinese(AppLanguage::traditionalChinese);
    EXPECT_EQ(displayText(TargetLanguage::traditionalChinese), u"繁體中文"_s);
    EXPECT_EQ(displayText(TargetLanguage::japanese), u"日文"_s);
    EXPECT_EQ(displayText(TargetLanguage::english), u"英文"_s);
}

TEST(PolishMode, hasItsCasesInTheOrderOfThePickers)
{
    EXPECT_THAT(allCases<PolishMode>(), ElementsAre(PolishMode::businessJapanese, PolishMode::naturalJapanese,
                                                    PolishMode::traditionalChinese, PolishMode::concise));
}

TEST(PolishMode, hasTheCaseNamesAsRawValues)
{
    EXPECT_EQ(rawValue(PolishMode::businessJapanese), u"businessJapanese"_s);
    EXPECT_EQ(rawValue(PolishMode::naturalJapanese), u"naturalJapanese"_s);
    EXPECT_EQ(rawValue(PolishMode::traditionalChinese), u"traditionalChinese"_s);
    EXPECT_EQ(rawValue(PolishMode::concise), u"concise"_s);
    for (const PolishMode mode : allCases<PolishMode>()) {
        EXPECT_EQ(fromRawValue<PolishMode>(rawValue(mode)), mode);
    }
}

TEST(PolishMode, isAbsentForAnUnknownRawValue)
{
    for (const QString &raw : {u""_s, u"Concise"_s, u"concise "_s, u"casual"_s}) {
        EXPECT_EQ(fromRawValue<PolishMode>(raw), std::nullopt) << raw.toStdString();
    }
}

TEST(PolishMode, isShownInTheInterfaceLanguage)
{
    EXPECT_EQ(displayText(PolishMode::businessJapanese), u"Business Japanese"_s);
    EXPECT_EQ(displayText(PolishMode::naturalJapanese), u"Natural Japanese"_s);
    EXPECT_EQ(displayText(PolishMode::traditionalChinese), u"Traditional Chinese"_s);
    EXPECT_EQ(displayText(PolishMode::concise), u"Concise"_s);
    const InterfaceLanguage japanese(AppLanguage::japanese);
    EXPECT_EQ(displayText(PolishMode::businessJapanese), u"ビジネス日本語"_s);
    EXPECT_EQ(displayText(PolishMode::naturalJapanese), u"自然な日本語"_s);
    EXPECT_EQ(displayText(PolishMode::traditionalChinese), u"繁体字中国語"_s);
    EXPECT_EQ(displayText(PolishMode::concise), u"簡潔化"_s);
}

} // namespace
} // namespace orvesa
