#include "Core/SettingsStore.h"
#include "Core/Localization.h"
#include "fakes/FakePreferredLanguages.h"
#include "fakes/FakeUserDefaults.h"
#include "fakes/InterfaceLanguage.h"
#include "fakes/QtPrinting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

namespace orvesa {
namespace {

using namespace Qt::StringLiterals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Write = FakeUserDefaults::Write;

const KeyCombo optionS{1, 0x800, u"S"_s};
const KeyCombo commandOptionP{35, 2304, u"P"_s};

class SettingsStoreTest : public ::testing::Test {
protected:
    SettingsStoreTest()
    {
        SettingsStore *store = m_store.get();
        note(&SettingsStore::willChange, "will");
        note(&SettingsStore::defaultProviderChanged, "provider");
        note(&SettingsStore::targetLanguageChanged, "target");
        note(&SettingsStore::polishModeChanged, "polish");
        note(&SettingsStore::thinkingEnabledChanged, "thinking");
        note(&SettingsStore::hotKeyOverridesChanged, "hotKeys");
        note(&SettingsStore::appLanguageChanged, "appLanguage");
        note(&SettingsStore::themeChanged, "theme");
        note(&SettingsStore::customPromptsChanged, "prompts");
        QObject::connect(store, &SettingsStore::willChange, store,
                         [this] { m_writesBefore = m_defaults.writes().size(); });
    }

    void note(void (SettingsStore::*signal)(), const char *name)
    {
        QObject::connect(m_store.get(), signal, m_store.get(), [this, name] { m_signals.emplace_back(name); });
    }

    InterfaceLanguage m_interfaceLanguage{AppLanguage::english};
    FakeUserDefaults m_defaults;
    FakePreferredLanguages m_languages{{u"en"_s}};
    std::unique_ptr<SettingsStore> m_store = std::make_unique<SettingsStore>(m_defaults, m_languages);
    std::vector<std::string> m_signals;
    std::size_t m_writesBefore = 1000;
};

TEST_F(SettingsStoreTest, writesEachEnumerationAsItsRawValue)
{
    m_store->setDefaultProvider(AIProviderType::xAI);
    m_store->setTargetLanguage(TargetLanguage::english);
    m_store->setPolishMode(PolishMode::concise);
    m_store->setAppLanguage(AppLanguage::traditionalChinese);
    m_store->setTheme(AppTheme::sunset);
    EXPECT_THAT(m_defaults.writes(),
                ElementsAre(Write{u"settings.defaultProvider"_s, u"xAI"_s},
                            Write{u"settings.targetLanguage"_s, u"English"_s},
                            Write{u"settings.polishMode"_s, u"concise"_s},
                            Write{u"settings.appLanguage"_s, u"zh-Hant"_s}, Write{u"settings.theme"_s, u"sunset"_s}));
    EXPECT_EQ(m_store->defaultProvider(), AIProviderType::xAI);
    EXPECT_EQ(m_store->targetLanguage(), TargetLanguage::english);
    EXPECT_EQ(m_store->polishMode(), PolishMode::concise);
    EXPECT_EQ(m_store->appLanguage(), AppLanguage::traditionalChinese);
    EXPECT_EQ(m_store->theme(), AppTheme::sunset);
    EXPECT_THAT(m_signals, ElementsAre("will", "provider", "will", "target", "will", "polish", "will", "appLanguage",
                                       "will", "theme"));
}

TEST_F(SettingsStoreTest, writesThinkingAsABoolean)
{
    m_store->setThinkingEnabled(true);
    m_store->setThinkingEnabled(false);
    EXPECT_THAT(m_defaults.writes(), ElementsAre(Write{u"settings.thinkingEnabled"_s, DefaultsValue(true)},
                                                 Write{u"settings.thinkingEnabled"_s, DefaultsValue(false)}));
    EXPECT_THAT(m_signals, ElementsAre("will", "thinking", "will", "thinking"));
}

TEST_F(SettingsStoreTest, writesOverridesAsOneJSONObjectInTheOrderOfTheActions)
{
    m_store->setHotKeyOverrides(
        {{HotKeyAction::ocrTranslate, KeyCombo{96, 0, u"F5"_s}}, {HotKeyAction::polishSelection, commandOptionP}});
    EXPECT_THAT(
        m_defaults.writes(),
        ElementsAre(Write{u"settings.hotKeys"_s,
                          QByteArray(R"({"polishSelection":{"keyCode":35,"carbonModifiers":2304,"keyLabel":"P"},)"
                                     R"("ocrTranslate":{"keyCode":96,"carbonModifiers":0,"keyLabel":"F5"}})")}));
    EXPECT_THAT(m_signals, ElementsAre("will", "hotKeys"));
}

TEST_F(SettingsStoreTest, writesPromptsAsAJSONArrayInListOrder)
{
    const QUuid id = QUuid::fromString("{0a1b2c3d-4e5f-6071-8293-a4b5c6d7e8f9}"_L1);
    m_store->setCustomPrompts({{id, u"名"_s, u"t"_s, std::nullopt}});
    m_store->setCustomPrompts({});
    EXPECT_THAT(
        m_defaults.writes(),
        ElementsAre(Write{u"settings.customPrompts"_s,
                          QByteArray(R"([{"id":"0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F9","name":"名","template":"t"}])")},
                    Write{u"settings.customPrompts"_s, QByteArray("[]")}));
    EXPECT_THAT(m_signals, ElementsAre("will", "prompts", "will", "prompts"));
}

TEST_F(SettingsStoreTest, readsBackEverythingThatItWrote)
{
    const std::vector<CustomPrompt> prompts{{QUuid::createUuid(), u"b"_s, u"{text}\n"_s, optionS},
                                            {QUuid::createUuid(), u""_s, u""_s, std::nullopt}};
    m_store->setDefaultProvider(AIProviderType::openAI);
    m_store->setTargetLanguage(TargetLanguage::japanese);
    m_store->setPolishMode(PolishMode::naturalJapanese);
    m_store->setThinkingEnabled(true);
    m_store->setHotKeyOverrides({{HotKeyAction::translateSelection, commandOptionP}});
    m_store->setAppLanguage(AppLanguage::japanese);
    m_store->setTheme(AppTheme::forest);
    m_store->setCustomPrompts(prompts);
    m_store->setModel(u"own"_s, AIProviderType::openAI);
    m_store.reset();
    const SettingsStore again(m_defaults, m_languages);
    EXPECT_EQ(again.defaultProvider(), AIProviderType::openAI);
    EXPECT_EQ(again.targetLanguage(), TargetLanguage::japanese);
    EXPECT_EQ(again.polishMode(), PolishMode::naturalJapanese);
    EXPECT_TRUE(again.thinkingEnabled());
    EXPECT_EQ(again.hotKeyOverrides(), (HotKeyOverrides{{HotKeyAction::translateSelection, commandOptionP}}));
    EXPECT_EQ(again.appLanguage(), AppLanguage::japanese);
    EXPECT_EQ(again.theme(), AppTheme::forest);
    EXPECT_EQ(again.customPrompts(), prompts);
    EXPECT_EQ(again.model(AIProviderType::openAI), u"own"_s);
}

TEST_F(SettingsStoreTest, announcesBeforeItSetsAndWritesBeforeItTells)
{
    AppTheme atWillChange{};
    std::size_t writesAtChanged = 0;
    QObject::connect(m_store.get(), &SettingsStore::willChange, m_store.get(),
                     [&] { atWillChange = m_store->theme(); });
    QObject::connect(m_store.get(), &SettingsStore::themeChanged, m_store.get(),
                     [&] { writesAtChanged = m_defaults.writes().size(); });
    m_store->setTheme(AppTheme::ocean);
    EXPECT_EQ(atWillChange, AppTheme::violet);
    EXPECT_EQ(m_writesBefore, 0U);
    EXPECT_EQ(writesAtChanged, 1U);
}

TEST_F(SettingsStoreTest, writesAndTellsAlsoWhenTheValueIsTheSame)
{
    m_store->setTheme(AppTheme::violet);
    EXPECT_THAT(m_defaults.writes(), ElementsAre(Write{u"settings.theme"_s, u"violet"_s}));
    EXPECT_THAT(m_signals, ElementsAre("will", "theme"));
}

TEST_F(SettingsStoreTest, switchesTheInterfaceLanguageAtOnce)
{
    QString seen;
    QObject::connect(m_store.get(), &SettingsStore::appLanguageChanged, m_store.get(),
                     [&] { seen = Localization::string(L10nKey::menuQuit); });
    m_store->setAppLanguage(AppLanguage::japanese);
    EXPECT_EQ(Localization::string(L10nKey::menuQuit), u"Orvesa Translate を終了"_s);
    EXPECT_EQ(seen, u"Orvesa Translate を終了"_s);
}

TEST_F(SettingsStoreTest, usesTheProvidersDefaultModelUntilOneIsStored)
{
    EXPECT_EQ(m_store->model(AIProviderType::openAI), u"gpt-5.4-mini"_s);
    EXPECT_EQ(m_store->model(AIProviderType::gemini), u"gemini-3.1-flash-lite"_s);
    EXPECT_EQ(m_store->model(AIProviderType::anthropic), u"claude-sonnet-5"_s);
    EXPECT_EQ(m_store->model(AIProviderType::xAI), u"grok-4.3"_s);
    m_defaults.prepare(u"settings.model.xAI"_s, u""_s);
    EXPECT_EQ(m_store->model(AIProviderType::xAI), QString());
}

TEST_F(SettingsStoreTest, storesAModelWithoutOuterBlanksAndTellsAfterwards)
{
    m_store->setModel(u" \n gpt x\u3000"_s, AIProviderType::openAI);
    EXPECT_THAT(m_defaults.writes(), ElementsAre(Write{u"settings.model.openAI"_s, u"gpt x"_s}));
    EXPECT_EQ(m_store->model(AIProviderType::openAI), u"gpt x"_s);
    EXPECT_THAT(m_signals, ElementsAre("will"));
    EXPECT_EQ(m_writesBefore, 1U);
    m_store->setModel(u"g"_s, AIProviderType::gemini);
    m_store->setModel(u"c"_s, AIProviderType::anthropic);
    m_store->setModel(u"k"_s, AIProviderType::xAI);
    EXPECT_EQ(m_defaults.value(u"settings.model.gemini"_s), DefaultsValue(u"g"_s));
    EXPECT_EQ(m_defaults.value(u"settings.model.anthropic"_s), DefaultsValue(u"c"_s));
    EXPECT_EQ(m_defaults.value(u"settings.model.xAI"_s), DefaultsValue(u"k"_s));
}

TEST_F(SettingsStoreTest, removesABlankModel)
{
    m_store->setModel(u"own"_s, AIProviderType::openAI);
    m_store->setModel(u"  "_s, AIProviderType::openAI);
    EXPECT_EQ(m_defaults.value(u"settings.model.openAI"_s), std::nullopt);
    EXPECT_EQ(m_defaults.writes().back(), (Write{u"settings.model.openAI"_s, std::nullopt}));
    EXPECT_EQ(m_store->model(AIProviderType::openAI), u"gpt-5.4-mini"_s);
    EXPECT_THAT(m_signals, ElementsAre("will", "will"));
}

TEST_F(SettingsStoreTest, buildsTheConfigurationFromTheCurrentValues)
{
    EXPECT_EQ(m_store->activeConfig(),
              (AIProviderConfig{AIProviderType::gemini, u"gemini-3.1-flash-lite"_s, u"Traditional Chinese"_s, false}));
    m_store->setDefaultProvider(AIProviderType::anthropic);
    m_store->setModel(u"mine"_s, AIProviderType::anthropic);
    m_store->setTargetLanguage(TargetLanguage::japanese);
    m_store->setThinkingEnabled(true);
    EXPECT_EQ(m_store->activeConfig(), (AIProviderConfig{AIProviderType::anthropic, u"mine"_s, u"Japanese"_s, true}));
}

TEST_F(SettingsStoreTest, givesTheOverrideOrTheDefaultShortcut)
{
    EXPECT_EQ(m_store->combo(HotKeyAction::polishSelection), optionS);
    EXPECT_FALSE(m_store->isCustomized(HotKeyAction::polishSelection));
    m_store->setCombo(commandOptionP, HotKeyAction::polishSelection);
    EXPECT_EQ(m_store->combo(HotKeyAction::polishSelection), commandOptionP);
    EXPECT_TRUE(m_store->isCustomized(HotKeyAction::polishSelection));
    EXPECT_FALSE(m_store->isCustomized(HotKeyAction::translateSelection));
    EXPECT_THAT(m_signals, ElementsAre("will", "hotKeys"));
}

TEST_F(SettingsStoreTest, removesAnOverrideThatEqualsTheDefaultWhateverItsLabel)
{
    m_store->setCombo(commandOptionP, HotKeyAction::translateSelection);
    m_store->setCombo({2, 0x800, u"Д"_s}, HotKeyAction::translateSelection);
    EXPECT_FALSE(m_store->isCustomized(HotKeyAction::translateSelection));
    EXPECT_EQ(m_store->combo(HotKeyAction::translateSelection), (KeyCombo{2, 0x800, u"D"_s}));
    EXPECT_EQ(m_defaults.writes().back(), (Write{u"settings.hotKeys"_s, QByteArray("{}")}));
}

TEST_F(SettingsStoreTest, savesAlsoWhenThereWasNoOverrideToRemove)
{
    m_store->setCombo({2, 0x800, u"D"_s}, HotKeyAction::translateSelection);
    EXPECT_THAT(m_defaults.writes(), ElementsAre(Write{u"settings.hotKeys"_s, QByteArray("{}")}));
}

TEST_F(SettingsStoreTest, replacesAnEarlierOverride)
{
    m_store->setCombo(commandOptionP, HotKeyAction::ocrTranslate);
    m_store->setCombo({2, 0x800, u"D"_s}, HotKeyAction::ocrTranslate);
    EXPECT_EQ(m_store->combo(HotKeyAction::ocrTranslate), (KeyCombo{2, 0x800, u"D"_s}));
    EXPECT_EQ(m_store->hotKeyOverrides().size(), 1U);
}

TEST_F(SettingsStoreTest, findsConflictsWithOtherActions)
{
    EXPECT_FALSE(m_store->isComboTaken(optionS, HotKeyAction::polishSelection, std::nullopt));
    EXPECT_TRUE(m_store->isComboTaken(optionS, std::nullopt, std::nullopt));
    EXPECT_TRUE(m_store->isComboTaken({1, 0x800, u"other label"_s}, HotKeyAction::translateSelection, std::nullopt));
    EXPECT_FALSE(m_store->isComboTaken({1, 0x900, u"S"_s}, std::nullopt, std::nullopt));
    EXPECT_FALSE(m_store->isComboTaken({40, 0x800, u"S"_s}, std::nullopt, std::nullopt));
}

TEST_F(SettingsStoreTest, comparesWithTheEffectiveShortcutAndNotWithTheDefault)
{
    m_store->setCombo(commandOptionP, HotKeyAction::polishSelection);
    EXPECT_FALSE(m_store->isComboTaken(optionS, std::nullopt, std::nullopt));
    EXPECT_TRUE(m_store->isComboTaken(commandOptionP, HotKeyAction::ocrTranslate, std::nullopt));
}

TEST_F(SettingsStoreTest, findsConflictsWithOtherPrompts)
{
    const QUuid first = QUuid::createUuid();
    const QUuid second = QUuid::createUuid();
    m_store->setCustomPrompts({{first, u"a"_s, u""_s, std::nullopt}, {second, u"b"_s, u""_s, commandOptionP}});
    EXPECT_FALSE(m_store->isComboTaken(commandOptionP, std::nullopt, second));
    EXPECT_TRUE(m_store->isComboTaken(commandOptionP, std::nullopt, first));
    EXPECT_TRUE(m_store->isComboTaken(commandOptionP, HotKeyAction::polishSelection, std::nullopt));
    EXPECT_FALSE(m_store->isComboTaken({35, 2048, u"P"_s}, std::nullopt, std::nullopt));
    EXPECT_FALSE(m_store->isComboTaken({36, 2304, u"P"_s}, std::nullopt, std::nullopt));
}

TEST_F(SettingsStoreTest, takesOverWhatAnotherProcessChangedWithoutWriting)
{
    m_defaults.changeFromOutside(u"settings.theme"_s, u"forest"_s);
    EXPECT_EQ(m_store->theme(), AppTheme::forest);
    EXPECT_THAT(m_signals, ElementsAre("will", "theme"));
    EXPECT_THAT(m_defaults.writes(), IsEmpty());
}

TEST_F(SettingsStoreTest, tellsOfEveryPropertyThatAnotherProcessChanged)
{
    const std::pair<QString, DefaultsValue> changes[] = {
        {u"settings.defaultProvider"_s, u"openAI"_s},
        {u"settings.targetLanguage"_s, u"English"_s},
        {u"settings.polishMode"_s, u"concise"_s},
        {u"settings.thinkingEnabled"_s, true},
        {u"settings.hotKeys"_s,
         QByteArray(R"({"polishSelection":{"keyCode":35,"carbonModifiers":2304,"keyLabel":"P"}})")},
        {u"settings.appLanguage"_s, u"ja"_s},
        {u"settings.customPrompts"_s,
         QByteArray(R"([{"id":"0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F9","name":"n","template":"t"}])")},
    };
    for (const auto &[key, value] : changes) {
        m_defaults.changeFromOutside(key, value);
    }
    EXPECT_THAT(m_signals, ElementsAre("will", "provider", "will", "target", "will", "polish", "will", "thinking",
                                       "will", "hotKeys", "will", "appLanguage", "will", "prompts"));
    EXPECT_EQ(Localization::current(), AppLanguage::japanese);
    m_signals.clear();
    m_defaults.changeFromOutside(u"settings.hotKeys"_s, std::nullopt);
    EXPECT_THAT(m_signals, ElementsAre("will", "hotKeys"));
    EXPECT_TRUE(m_store->hotKeyOverrides().empty());
}

TEST_F(SettingsStoreTest, announcesAnOutsideChangeOfAModel)
{
    m_defaults.changeFromOutside(u"settings.model.gemini"_s, u"other"_s);
    EXPECT_THAT(m_signals, ElementsAre("will"));
    EXPECT_EQ(m_store->model(AIProviderType::gemini), u"other"_s);
}

TEST_F(SettingsStoreTest, tellsOfAllChangesEvenWhenAnObserverWritesMeanwhile)
{
    m_defaults.prepare(u"settings.defaultProvider"_s, u"openAI"_s);
    QObject::connect(m_store.get(), &SettingsStore::defaultProviderChanged, m_store.get(),
                     [this] { m_store->setTheme(AppTheme::violet); });
    m_defaults.changeFromOutside(u"settings.theme"_s, u"ocean"_s);
    EXPECT_THAT(m_signals, ElementsAre("will", "provider", "will", "theme", "theme"));
    EXPECT_EQ(m_store->theme(), AppTheme::violet);
}

TEST_F(SettingsStoreTest, stopsListeningWhenItIsDestroyed)
{
    EXPECT_TRUE(m_defaults.hasExternalChangeHandler());
    m_store.reset();
    EXPECT_FALSE(m_defaults.hasExternalChangeHandler());
}

} // namespace
} // namespace orvesa
