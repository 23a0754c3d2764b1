// Where a section of the settings window learns whether its service has a key.

#include "App/ProviderSettingsFixture.h"

using namespace Qt::StringLiterals;

namespace orvesa {
namespace {

using ProviderStoredKeyTest = ProviderSettingsFixture;

TEST_F(ProviderStoredKeyTest, CarriesAnEarlierKeyForwardWhenItLoads)
{
    storeKey("old", u"first-legacy"_s);
    model->load();
    EXPECT_TRUE(model->hasStoredKey());
    EXPECT_EQ(storedKey(), QByteArray("old"));
}

TEST_F(ProviderStoredKeyTest, AllSectionsTogetherAskAKeyStoreThatRefusesOnce)
{
    std::vector<std::unique_ptr<ProviderSettingsViewModel>> sections;
    for (const AIProviderType type : allCases<AIProviderType>()) {
        keyStore.setItem(u"current"_s, keychainAccount(type), "secret");
        sections.push_back(makeModel(type));
    }
    keyStore.setStatus(Operation::copyMatching, KeyStoreStatus::userCanceled);
    keyStore.gate().close();
    const std::size_t before = keyStore.calls().size();
    for (const auto &section : sections) {
        section->load();
    }
    keyStore.gate().open();
    for (const auto &section : sections) {
        section->leave();
        section->load(); // the page is chosen again
        EXPECT_FALSE(section->hasStoredKey());
    }
    EXPECT_EQ(keyStore.calls().size() - before, 1U);
}

TEST_F(ProviderStoredKeyTest, LearnsOfTheKeyWhenAKeyStoreThatRefusedIsOpenedForAnother)
{
    storeKey("secret");
    keyStore.setStatus(Operation::copyMatching, KeyStoreStatus::userCanceled);
    keyStatus.refresh();
    const auto gemini = makeModel(AIProviderType::gemini);
    model->load();
    gemini->load();
    EXPECT_FALSE(model->hasStoredKey());
    keyStore.setStatus(Operation::copyMatching, std::nullopt);
    gemini->setAPIKeyInput(u"key"_s);
    gemini->saveKey();
    EXPECT_TRUE(gemini->hasStoredKey());
    EXPECT_TRUE(model->hasStoredKey());
}

TEST_F(ProviderStoredKeyTest, ForgetsTheKeyOfAKeyStoreThatHasGoneOrRefuses)
{
    storeKey("secret");
    for (const qint32 status : {KeyStoreStatus::notAvailable, KeyStoreStatus::userCanceled}) {
        model->load();
        EXPECT_TRUE(model->hasStoredKey());
        model->leave();
        keyStore.setStatus(Operation::copyMatching, status);
        keyStatus.refresh(); // the window is opened again
        model->load();
        EXPECT_FALSE(model->hasStoredKey());
        keyStore.setStatus(Operation::copyMatching, std::nullopt);
        keyStatus.refresh();
        EXPECT_TRUE(model->hasStoredKey()) << "once it answers again";

        keyStore.gate().close();
        keyStore.setStatus(Operation::copyMatching, status);
        model->load();
        keyStatus.refresh();
        EXPECT_TRUE(model->hasStoredKey()) << "nobody knows otherwise yet";
        keyStore.gate().open();
        EXPECT_FALSE(model->hasStoredKey());
        keyStore.setStatus(Operation::copyMatching, std::nullopt);
        keyStatus.refresh();
    }
}

TEST_F(ProviderStoredKeyTest, TakesWhatALookUnderWayHasFoundAlready)
{
    storeKey("secret");
    keyStore.setItem(u"current"_s, u"gemini_api_key"_s, "secret");
    const auto gemini = makeModel(AIProviderType::gemini);
    {
        QObject untilOpenAIIsKnown;
        QObject::connect(&keyStatus, &ProviderKeyStatus::looked, &untilOpenAIIsKnown,
                         [this] { keyStore.gate().close(); });
        keyStatus.refresh();
    }
    model->load();
    gemini->load();
    EXPECT_TRUE(keyStatus.isRefreshing());
    EXPECT_TRUE(model->hasStoredKey());
    EXPECT_FALSE(gemini->hasStoredKey());
    const std::size_t before = keyStore.calls().size();
    keyStore.gate().open();
    EXPECT_TRUE(gemini->hasStoredKey());
    for (std::size_t index = before; index < keyStore.calls().size(); ++index) {
        EXPECT_NE(keyStore.calls()[index].account, u"openai_api_key"_s) << "nothing was asked twice";
    }
}

} // namespace
} // namespace orvesa
