#include "App/Settings/ProviderSettingsViewModel.h"

#include "App/ProviderSettingsFixture.h"
#include "fakes/SignalCount.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace orvesa {
namespace {

using ProviderSettingsViewModelTest = ProviderSettingsFixture;

TEST_F(ProviderSettingsViewModelTest, StartsEmptyWithoutAKey)
{
    model->load();
    EXPECT_EQ(model->apiKeyInput(), QString());
    EXPECT_EQ(model->modelInput(), QString());
    EXPECT_FALSE(model->hasStoredKey());
    EXPECT_FALSE(model->isTesting());
    EXPECT_EQ(model->statusMessage(), std::nullopt);
    EXPECT_FALSE(model->canSave());
    EXPECT_FALSE(model->canTest());
    EXPECT_FALSE(model->canClear());
}

TEST_F(ProviderSettingsViewModelTest, SeesAStoredKeyWithoutShowingIt)
{
    storeKey("secret");
    model->load();
    EXPECT_TRUE(model->hasStoredKey());
    EXPECT_EQ(model->apiKeyInput(), QString());
    EXPECT_FALSE(model->canSave());
    EXPECT_TRUE(model->canTest());
    EXPECT_TRUE(model->canClear());
}

TEST_F(ProviderSettingsViewModelTest, SavesWithoutOuterBlanks)
{
    model->load();
    model->setAPIKeyInput(u" \t key-1 \n"_s);
    EXPECT_TRUE(model->canSave());
    EXPECT_TRUE(keyStatus.hasNoKey());
    model->saveKey();
    EXPECT_EQ(storedKey(), QByteArray("key-1"));
    EXPECT_EQ(model->apiKeyInput(), QString());
    EXPECT_TRUE(model->hasStoredKey());
    EXPECT_EQ(model->statusMessage(), u"API key saved to Keychain."_s);
    EXPECT_EQ(model->statusTone(), Tone::success);
    EXPECT_TRUE(keyStatus.hasAnyKey());
}

TEST_F(ProviderSettingsViewModelTest, SavesBlanksAsAnEmptyKeyThatIsNone)
{
    model->load();
    model->setAPIKeyInput(u"   "_s);
    EXPECT_TRUE(model->canSave());
    model->saveKey();
    EXPECT_EQ(storedKey(), QByteArray(""));
    EXPECT_TRUE(model->hasStoredKey());
    EXPECT_TRUE(keyStatus.hasNoKey());
    model->load();
    EXPECT_FALSE(model->hasStoredKey());
}

TEST_F(ProviderSettingsViewModelTest, TellsWhyItCouldNotSaveAndKeepsWhatWasTyped)
{
    model->load();
    for (const qint32 refusal : {KeyStoreStatus::userCanceled, KeyStoreStatus::notAvailable,
                                 KeyStoreStatus::authorizationFailed, KeyStoreStatus::interactionNotAllowed}) {
        keyStore.setStatus(Operation::update, refusal);
        model->setAPIKeyInput(u"key"_s);
        model->saveKey();
        EXPECT_EQ(model->statusMessage(), u"Failed to save key: Keychain error (status: %1)"_s.arg(refusal));
        EXPECT_EQ(model->statusTone(), Tone::failure);
        EXPECT_EQ(model->apiKeyInput(), u"key"_s);
        EXPECT_FALSE(model->hasStoredKey());
        EXPECT_TRUE(model->canSave());
    }
}

TEST_F(ProviderSettingsViewModelTest, SavesOnceWhileTheKeyStoreAsksForItsPassword)
{
    model->load();
    model->setAPIKeyInput(u"key"_s);
    keyStore.gate().close();
    model->saveKey();
    EXPECT_FALSE(model->canSave());
    EXPECT_EQ(model->statusMessage(), std::nullopt);
    EXPECT_FALSE(model->hasStoredKey());
    keyStore.gate().open();
    EXPECT_TRUE(model->hasStoredKey());
    EXPECT_EQ(model->statusMessage(), u"API key saved to Keychain."_s);
}

TEST_F(ProviderSettingsViewModelTest, AnOlderAnswerDoesNotHideAKeySavedSince)
{
    keyStore.gate().close();
    model->load();
    model->setAPIKeyInput(u"key"_s);
    model->saveKey();
    keyStore.gate().open(); // the reading, which began first, finds nothing
    EXPECT_TRUE(model->hasStoredKey());
    EXPECT_TRUE(keyStatus.hasAnyKey());
}

TEST_F(ProviderSettingsViewModelTest, ClearsTheKey)
{
    storeKey("secret");
    keyStatus.refresh();
    model->load();
    model->setAPIKeyInput(u"typed"_s);
    EXPECT_TRUE(model->canClear());
    model->clearKey();
    EXPECT_EQ(storedKey(), std::nullopt);
    EXPECT_EQ(model->apiKeyInput(), QString());
    EXPECT_FALSE(model->hasStoredKey());
    EXPECT_EQ(model->statusMessage(), u"API key removed."_s);
    EXPECT_EQ(model->statusTone(), Tone::neutral);
    EXPECT_TRUE(keyStatus.hasNoKey());
}

TEST_F(ProviderSettingsViewModelTest, AnEarlierIdentitysKeyComesBackAfterItWasCleared)
{
    storeKey("old", u"second-legacy"_s);
    model->load();
    model->clearKey();
    EXPECT_FALSE(model->hasStoredKey());
    EXPECT_EQ(model->statusMessage(), u"API key removed."_s);
    EXPECT_EQ(keyStore.item(u"second-legacy"_s, u"openai_api_key"_s), QByteArray("old"));
    model->load();
    EXPECT_TRUE(model->hasStoredKey());
    EXPECT_TRUE(keyStatus.hasAnyKey());
}

TEST_F(ProviderSettingsViewModelTest, TellsWhyItCouldNotClear)
{
    storeKey("secret");
    model->load();
    keyStore.setStatus(Operation::remove, KeyStoreStatus::interactionNotAllowed);
    model->clearKey();
    EXPECT_EQ(model->statusMessage(), u"Failed to remove key: Keychain error (status: -25308)"_s);
    EXPECT_TRUE(model->hasStoredKey());
    EXPECT_TRUE(model->canClear());
}

TEST_F(ProviderSettingsViewModelTest, TestsTheTypedKeyAsItIsAndStoresNothing)
{
    storeKey("stored");
    model->load();
    model->setAPIKeyInput(u"typed "_s);
    model->testKey();
    ASSERT_EQ(providers.calls().size(), 1U);
    EXPECT_EQ(providers.calls()[0].key, u"typed "_s);
    EXPECT_EQ(providers.calls()[0].type, AIProviderType::openAI);
    EXPECT_EQ(model->statusMessage(), u"✓ API key is valid."_s);
    EXPECT_EQ(model->statusTone(), Tone::success);
    EXPECT_EQ(model->apiKeyInput(), u"typed "_s);
    EXPECT_EQ(storedKey(), QByteArray("stored"));
}

TEST_F(ProviderSettingsViewModelTest, TestsBlanksAsTheyStand)
{
    model->load();
    model->setAPIKeyInput(u"  "_s);
    EXPECT_TRUE(model->canTest());
    providers.setRefusal(u"HTTP 401: no"_s);
    model->testKey();
    ASSERT_EQ(providers.calls().size(), 1U);
    EXPECT_EQ(providers.calls()[0].key, u"  "_s);
    EXPECT_EQ(model->statusMessage(), u"✗ API request failed: HTTP 401: no"_s);
}

TEST_F(ProviderSettingsViewModelTest, TestsTheStoredKeyWhenNothingIsTyped)
{
    storeKey("stored");
    model->load();
    model->testKey();
    ASSERT_EQ(providers.calls().size(), 1U);
    EXPECT_EQ(providers.calls()[0].key, u"stored"_s);
}

TEST_F(ProviderSettingsViewModelTest, SendsNothingWithoutAnyKey)
{
    model->load();
    model->testKey();
    EXPECT_TRUE(providers.calls().empty());
    EXPECT_EQ(model->statusMessage(), u"No API key to test."_s);
    EXPECT_EQ(model->statusTone(), Tone::neutral);
    EXPECT_FALSE(model->isTesting());
}

TEST_F(ProviderSettingsViewModelTest, SendsNothingWhenTheStoredKeyHasGone)
{
    storeKey("stored");
    model->load();
    keyStore.setStatus(Operation::copyMatching, KeyStoreStatus::userCanceled);
    model->testKey();
    EXPECT_TRUE(providers.calls().empty());
    EXPECT_EQ(model->statusMessage(), u"No API key to test."_s);
    EXPECT_FALSE(model->isTesting());
}

TEST_F(ProviderSettingsViewModelTest, ShowsTheServicesRefusalAndTestsAgain)
{
    storeKey("stored");
    model->load();
    providers.gate().close();
    providers.setRefusal(u"HTTP 401: {\"error\":{}}"_s);
    model->testKey();
    EXPECT_TRUE(model->isTesting());
    EXPECT_FALSE(model->canTest());
    EXPECT_EQ(model->statusMessage(), std::nullopt);
    providers.gate().open();
    EXPECT_FALSE(model->isTesting());
    EXPECT_TRUE(model->canTest());
    EXPECT_EQ(model->statusMessage(), u"✗ API request failed: HTTP 401: {\"error\":{}}"_s);
    EXPECT_EQ(model->statusTone(), Tone::failure);
    providers.setRefusal(std::nullopt);
    model->testKey();
    EXPECT_EQ(model->statusMessage(), u"✓ API key is valid."_s);
}

TEST_F(ProviderSettingsViewModelTest, LeavingStopsTheTestAndForgetsWhatWasTyped)
{
    storeKey("stored");
    model->load();
    model->setAPIKeyInput(u"typed"_s);
    providers.gate().close();
    model->testKey();
    model->leave();
    EXPECT_TRUE(providers.calls()[0].stop.stop_requested());
    EXPECT_FALSE(model->isTesting());
    EXPECT_EQ(model->apiKeyInput(), QString());
    providers.gate().open();
    EXPECT_EQ(model->statusMessage(), std::nullopt);
    model->load();
    EXPECT_EQ(model->statusMessage(), std::nullopt);
    EXPECT_TRUE(model->hasStoredKey());
}

TEST_F(ProviderSettingsViewModelTest, AnAnswerToAnEarlierVisitDoesNotEndALaterTest)
{
    model->load();
    model->setAPIKeyInput(u"one"_s);
    providers.gate().close();
    model->testKey();
    model->load();
    model->setAPIKeyInput(u"two"_s);
    model->testKey();
    EXPECT_TRUE(model->isTesting());
    providers.gate().open();
    EXPECT_EQ(model->statusMessage(), u"✓ API key is valid."_s);
    EXPECT_TRUE(providers.calls()[0].stop.stop_requested());
    EXPECT_FALSE(providers.calls()[1].stop.stop_requested());
}

TEST_F(ProviderSettingsViewModelTest, MayGoWhileATestOrTheKeyStoreIsPending)
{
    model->load();
    model->setAPIKeyInput(u"typed"_s);
    providers.gate().close();
    model->testKey();
    keyStore.gate().close();
    model->saveKey();
    model.reset();
    keyStore.gate().open();
    providers.gate().open();
    EXPECT_TRUE(providers.calls()[0].stop.stop_requested());
    EXPECT_EQ(storedKey(), QByteArray("typed")); // what was begun is done
    EXPECT_TRUE(keyStatus.hasAnyKey()) << "the badge goes although the page has gone before";
}

TEST_F(ProviderSettingsViewModelTest, MayGoWhileAKeyIsRemoved)
{
    storeKey("secret");
    model->load();
    EXPECT_TRUE(keyStatus.hasAnyKey());
    keyStore.gate().close();
    model->clearKey();
    model.reset();
    keyStore.gate().open();
    EXPECT_EQ(storedKey(), std::nullopt);
    EXPECT_TRUE(keyStatus.hasNoKey());
}

TEST_F(ProviderSettingsViewModelTest, FollowsTheInterfaceLanguage)
{
    model->load();
    model->testKey();
    settings.setAppLanguage(AppLanguage::japanese);
    EXPECT_EQ(model->statusMessage(), u"テストする API キーがありません。"_s);
    settings.setAppLanguage(AppLanguage::english);
}

TEST_F(ProviderSettingsViewModelTest, LeavesTheModelEmptyWhereTheDefaultApplies)
{
    model->load();
    EXPECT_EQ(model->modelInput(), QString());
    settings.setModel(u"gpt-5.4-mini"_s, AIProviderType::openAI);
    model->load();
    EXPECT_EQ(model->modelInput(), u"gpt-5.4-mini"_s);
}

TEST_F(ProviderSettingsViewModelTest, StoresTheModelAtEveryChangeWithoutOuterBlanks)
{
    model->load();
    model->setModelInput(u" gpt-5.5 "_s);
    EXPECT_EQ(settings.storedModel(AIProviderType::openAI), u"gpt-5.5"_s);
    EXPECT_EQ(model->modelInput(), u" gpt-5.5 "_s); // still being typed
    model->setModelInput(u"   "_s);
    EXPECT_EQ(settings.storedModel(AIProviderType::openAI), std::nullopt);
    EXPECT_EQ(settings.model(AIProviderType::openAI), u"gpt-5.4-mini"_s);
    EXPECT_EQ(model->modelInput(), u"   "_s);
}

TEST_F(ProviderSettingsViewModelTest, AnEmptyModelStandsForTheDefault)
{
    settings.setModel(u"gpt-5.5"_s, AIProviderType::openAI);
    model->load();
    model->setModelInput(QString());
    EXPECT_EQ(settings.storedModel(AIProviderType::openAI), std::nullopt);
}

TEST_F(ProviderSettingsViewModelTest, FollowsAModelChosenElsewhere)
{
    model->load();
    defaults.changeFromOutside(u"settings.model.openAI"_s, DefaultsValue(u"gpt-5.4"_s));
    EXPECT_EQ(model->modelInput(), u"gpt-5.4"_s);
    const SignalCount changes(model.get(), &ProviderSettingsViewModel::changed);
    settings.setTheme(AppTheme::ocean);
    EXPECT_EQ(changes.size(), 0);
}

} // namespace
} // namespace orvesa
