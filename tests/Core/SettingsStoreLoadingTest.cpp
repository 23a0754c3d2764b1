#include "Core/Localization.h"
#include "Core/SettingsStore.h"
#include "fakes/FakePreferredLanguages.h"
#include "fakes/FakeUserDefaults.h"
#include "fakes/InterfaceLanguage.h"
#include "fakes/QtPrinting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orvesa {
namespace {

using namespace Qt::StringLiterals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

class SettingsStoreLoading : public ::testing::Test {
protected:
    /// Valid until the next call.
    const SettingsStore &load()
    {
        m_store.emplace(m_defaults, m_languages);
        return *m_store;
    }

    bool thinkingAfter(const DefaultsValue &stored)
    {
        m_defaults.prepare(u"settings.thinkingEnabled"_s, stored);
        return load().thinkingEnabled();
    }

    HotKeyOverrides overridesAfter(const QByteArray &stored)
    {
        m_defaults.prepare(u"settings.hotKeys"_s, stored);
        return load().hotKeyOverrides();
    }

    std::vector<CustomPrompt> promptsAfter(const QByteArray &stored)
    {
        m_defaults.prepare(u"settings.customPrompts"_s, stored);
        return load().customPrompts();
    }

    InterfaceLanguage m_interfaceLanguage{AppLanguage::english};
    FakeUserDefaults m_defaults;
    FakePreferredLanguages m_languages{{u"ja-JP"_s}};
    std::optional<SettingsStore> m_store;
};

TEST_F(SettingsStoreLoading, takesTheDefaultsFromAFreshDatabase)
{
    const SettingsStore &store = load();
    EXPECT_EQ(store.defaultProvider(), AIProviderType::gemini);
    EXPECT_EQ(store.targetLanguage(), TargetLanguage::traditionalChinese);
    EXPECT_EQ(store.polishMode(), PolishMode::businessJapanese);
    EXPECT_FALSE(store.thinkingEnabled());
    EXPECT_TRUE(store.hotKeyOverrides().empty());
    EXPECT_EQ(store.appLanguage(), AppLanguage::japanese);
    EXPECT_EQ(store.theme(), AppTheme::violet);
    EXPECT_TRUE(store.customPrompts().empty());
}

TEST_F(SettingsStoreLoading, writesNothing)
{
    m_defaults.prepare(u"settings.theme"_s, u"unknown"_s);
    m_defaults.prepare(u"settings.hotKeys"_s, QByteArray("broken"));
    load();
    EXPECT_THAT(m_defaults.writes(), IsEmpty());
    EXPECT_EQ(m_defaults.value(u"settings.hotKeys"_s), DefaultsValue(QByteArray("broken")));
}

TEST_F(SettingsStoreLoading, takesWhatIsStored)
{
    m_defaults.prepare(u"settings.defaultProvider"_s, u"anthropic"_s);
    m_defaults.prepare(u"settings.targetLanguage"_s, u"English"_s);
    m_defaults.prepare(u"settings.polishMode"_s, u"concise"_s);
    m_defaults.prepare(u"settings.thinkingEnabled"_s, true);
    m_defaults.prepare(u"settings.hotKeys"_s,
                       QByteArray(R"({"polishSelection":{"keyCode":35,"carbonModifiers":2304,"keyLabel":"P"}})"));
    m_defaults.prepare(u"settings.appLanguage"_s, u"zh-Hant"_s);
    m_defaults.prepare(u"settings.theme"_s, u"graphite"_s);
    m_defaults.prepare(u"settings.customPrompts"_s,
                       QByteArray(R"([{"id":"0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F9","name":"n","template":"t"}])"));
    const SettingsStore &store = load();
    EXPECT_EQ(store.defaultProvider(), AIProviderType::anthropic);
    EXPECT_EQ(store.targetLanguage(), TargetLanguage::english);
    EXPECT_EQ(store.polishMode(), PolishMode::concise);
    EXPECT_TRUE(store.thinkingEnabled());
    EXPECT_THAT(store.hotKeyOverrides(), ElementsAre(Pair(HotKeyAction::polishSelection, KeyCombo{35, 2304, u"P"_s})));
    EXPECT_EQ(store.appLanguage(), AppLanguage::traditionalChinese);
    EXPECT_EQ(store.theme(), AppTheme::graphite);
    ASSERT_EQ(store.customPrompts().size(), 1U);
    EXPECT_EQ(store.customPrompts().front().name, u"n"_s);
}

TEST_F(SettingsStoreLoading, takesTheDefaultForAValueThatMatchesNoCaseExactly)
{
    m_defaults.prepare(u"settings.defaultProvider"_s, u"OpenAI"_s);
    m_defaults.prepare(u"settings.targetLanguage"_s, u"english"_s);
    m_defaults.prepare(u"settings.polishMode"_s, u"Concise"_s);
    m_defaults.prepare(u"settings.appLanguage"_s, u"zh-hant"_s);
    m_defaults.prepare(u"settings.theme"_s, u"Ocean"_s);
    const SettingsStore &store = load();
    EXPECT_EQ(store.defaultProvider(), AIProviderType::gemini);
    EXPECT_EQ(store.targetLanguage(), TargetLanguage::traditionalChinese);
    EXPECT_EQ(store.polishMode(), PolishMode::businessJapanese);
    EXPECT_EQ(store.appLanguage(), AppLanguage::japanese);
    EXPECT_EQ(store.theme(), AppTheme::violet);
}

TEST_F(SettingsStoreLoading, takesTheDefaultForAValueOfAnotherType)
{
    m_defaults.prepare(u"settings.defaultProvider"_s, qint64{2});
    m_defaults.prepare(u"settings.theme"_s, QByteArray("ocean"));
    m_defaults.prepare(u"settings.hotKeys"_s, u"{}"_s);
    m_defaults.prepare(u"settings.customPrompts"_s, true);
    m_defaults.prepare(u"settings.model.openAI"_s, 1.5);
    const SettingsStore &store = load();
    EXPECT_EQ(store.defaultProvider(), AIProviderType::gemini);
    EXPECT_EQ(store.theme(), AppTheme::violet);
    EXPECT_TRUE(store.hotKeyOverrides().empty());
    EXPECT_TRUE(store.customPrompts().empty());
    EXPECT_EQ(store.model(AIProviderType::openAI), u"gpt-5.4-mini"_s);
}

TEST_F(SettingsStoreLoading, setsTheInterfaceLanguage)
{
    load();
    EXPECT_EQ(Localization::current(), AppLanguage::japanese);
    m_defaults.prepare(u"settings.appLanguage"_s, u"zh-Hant"_s);
    load();
    EXPECT_EQ(Localization::current(), AppLanguage::traditionalChinese);
}

TEST_F(SettingsStoreLoading, readsNumbersAsBooleans)
{
    EXPECT_TRUE(thinkingAfter(true));
    EXPECT_FALSE(thinkingAfter(false));
    EXPECT_TRUE(thinkingAfter(qint64{1}));
    EXPECT_TRUE(thinkingAfter(qint64{-3}));
    EXPECT_FALSE(thinkingAfter(qint64{0}));
    EXPECT_TRUE(thinkingAfter(0.5));
    EXPECT_FALSE(thinkingAfter(0.0));
    EXPECT_FALSE(thinkingAfter(QByteArray("true")));
}

TEST_F(SettingsStoreLoading, readsTextsAsBooleans)
{
    for (const QString &text : {u"YES"_s, u"yes"_s, u"y"_s, u"true"_s, u"TRUE"_s, u"T"_s, u"1"_s, u"9x"_s, u" 7"_s,
                                u"-1"_s, u"+1"_s, u"007"_s}) {
        EXPECT_TRUE(thinkingAfter(text)) << text.toStdString();
    }
    for (const QString &text : {u""_s, u"NO"_s, u"no"_s, u"false"_s, u"0"_s, u"000"_s, u"-0"_s, u"on"_s, u"x1"_s}) {
        EXPECT_FALSE(thinkingAfter(text)) << text.toStdString();
    }
}

TEST_F(SettingsStoreLoading, dropsOverridesOfUnknownActions)
{
    EXPECT_THAT(overridesAfter(R"({"translateSelection":{"keyCode":3,"carbonModifiers":2048,"keyLabel":"F"},)"
                               R"("somethingElse":{"keyCode":4,"carbonModifiers":2048,"keyLabel":"H"}})"),
                ElementsAre(Pair(HotKeyAction::translateSelection, KeyCombo{3, 2048, u"F"_s})));
    m_store->setCombo({35, 2304, u"P"_s}, HotKeyAction::polishSelection);
    EXPECT_EQ(m_defaults.value(u"settings.hotKeys"_s),
              DefaultsValue(QByteArray(R"({"translateSelection":{"keyCode":3,"carbonModifiers":2048,"keyLabel":"F"},)"
                                       R"("polishSelection":{"keyCode":35,"carbonModifiers":2304,"keyLabel":"P"}})")));
}

TEST_F(SettingsStoreLoading, takesNoActionByANameThatOnlyLooksLikeIt)
{
    EXPECT_THAT(overridesAfter(R"({"\ufefftranslateSelection":{"keyCode":3,"carbonModifiers":2048,"keyLabel":"F"},)"
                               R"("TranslateSelection":{"keyCode":4,"carbonModifiers":2048,"keyLabel":"H"},)"
                               R"("polishSelection ":{"keyCode":5,"carbonModifiers":2048,"keyLabel":"G"}})"),
                IsEmpty());
}

TEST_F(SettingsStoreLoading, hasNoOverridesWhenTheirDataDoNotDecode)
{
    for (const char *data :
         {"", "nonsense", "[]", "null", "\"x\"", R"({"translateSelection":)", R"({"translateSelection":5})",
          R"({"translateSelection":{"keyCode":3,"carbonModifiers":2048}})",
          R"({"polishSelection":{"keyCode":35,"carbonModifiers":2304,"keyLabel":"P"},"other":1})",
          "{\"translateSelection\":{\"keyCode\":3,\"carbonModifiers\":2048,\"keyLabel\":\"\xFF\"}}",
          R"({"translateSelection":{"keyCode":3,"carbonModifiers":2048,"keyLabel":"F"}} more)"}) {
        EXPECT_THAT(overridesAfter(data), IsEmpty()) << data;
    }
}

TEST_F(SettingsStoreLoading, keepsThePromptsInTheirOrder)
{
    const auto prompts = promptsAfter(R"([{"id":"0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F9","name":"z","template":"1"},)"
                                      R"({"id":"1A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F9","name":"a","template":"2",)"
                                      R"("hotKey":{"keyCode":35,"carbonModifiers":2304,"keyLabel":"P"}}])");
    ASSERT_EQ(prompts.size(), 2U);
    EXPECT_EQ(prompts[0].name, u"z"_s);
    EXPECT_EQ(prompts[1].name, u"a"_s);
    EXPECT_EQ(prompts[1].hotKey, (KeyCombo{35, 2304, u"P"_s}));
}

TEST_F(SettingsStoreLoading, hasNoPromptsWhenTheirDataDoNotDecode)
{
    for (const char *data : {"", "x", "{}", "null", "[1]", R"([{"name":"n","template":"t"}])",
                             R"([{"id":"0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F9","name":"n","template":"t"},{}])"}) {
        EXPECT_THAT(promptsAfter(data), IsEmpty()) << data;
    }
}

TEST_F(SettingsStoreLoading, isNotHeldUpByObjectsWithVeryManyMembers)
{
    const auto overrides = [](int others) {
        const QByteArray combo = R"({"keyCode":17,"carbonModifiers":256,"keyLabel":"T"})";
        QByteArray data = R"({"translateSelection":)" + combo;
        for (int other = 0; other < others; ++other) {
            data += ",\"" + QByteArray::number(other) + "\":" + combo;
        }
        return data + '}';
    };
    EXPECT_EQ(overridesAfter(overrides(999)).size(), 1U);
    EXPECT_THAT(overridesAfter(overrides(1000)), IsEmpty());
    QByteArray prompt = R"([{"id":"E621E1F8-C36C-495A-93FC-0C247A3E6E5F","name":"a","template":"b")";
    for (int other = 0; other < 1000; ++other) {
        prompt += ",\"" + QByteArray::number(other) + "\":0";
    }
    EXPECT_THAT(promptsAfter(prompt + "}]"), IsEmpty());
}

TEST_F(SettingsStoreLoading, survivesDeeplyNestedData)
{
    EXPECT_THAT(overridesAfter(QByteArray(200000, '[')), IsEmpty());
    EXPECT_THAT(overridesAfter(QByteArray(100000, '[') + QByteArray(100000, ']')), IsEmpty());
    EXPECT_THAT(promptsAfter(QByteArray(100000, '[') + QByteArray(100000, ']')), IsEmpty());
}

} // namespace
} // namespace orvesa
