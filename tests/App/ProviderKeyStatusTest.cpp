#include "App/Settings/ProviderKeyStatus.h"

#include "AI/AIProviderType.h"
#include "App/SettingsFixture.h"
#include "fakes/SignalCount.h"

#include <gtest/gtest.h>

#include <functional>

using namespace Qt::StringLiterals;

namespace orvesa {
namespace {

class ProviderKeyStatusTest : public testing::Test, protected SettingsOnFakes {
protected:
    /// Lets something happen as soon as the service's key was looked for.
    static void after(const ProviderKeyStatus &status, AIProviderType type, const std::function<void()> &happens)
    {
        QObject::connect(&status, &ProviderKeyStatus::looked, &status, [type, happens](AIProviderType looked, bool) {
            if (looked == type) {
                happens();
            }
        });
    }

    void refuse(std::optional<qint32> status) { keyStore.setStatus(FakeKeyStore::Operation::copyMatching, status); }
};

TEST_F(ProviderKeyStatusTest, KnowsThatThereIsNoKey)
{
    const ProviderKeyStatus status(keychain);
    EXPECT_FALSE(status.hasAnyKey());
    EXPECT_TRUE(status.hasNoKey());
}

TEST_F(ProviderKeyStatusTest, FindsAKeyOfAnyService)
{
    keyStore.setItem(u"current"_s, u"xai_api_key"_s, "secret");
    const ProviderKeyStatus status(keychain);
    EXPECT_TRUE(status.hasAnyKey());
    EXPECT_FALSE(status.hasNoKey());
}

TEST_F(ProviderKeyStatusTest, IgnoresAnEmptyKey)
{
    keyStore.setItem(u"current"_s, u"openai_api_key"_s, "");
    const ProviderKeyStatus status(keychain);
    EXPECT_FALSE(status.hasAnyKey());
    EXPECT_TRUE(status.hasNoKey());
}

TEST_F(ProviderKeyStatusTest, CarriesEveryEarlierKeyForward)
{
    keyStore.setItem(u"second-legacy"_s, u"gemini_api_key"_s, "old");
    keyStore.setItem(u"first-legacy"_s, u"xai_api_key"_s, "older");
    const ProviderKeyStatus status(keychain);
    EXPECT_TRUE(status.hasAnyKey());
    EXPECT_EQ(keyStore.item(u"current"_s, u"gemini_api_key"_s), QByteArray("old"));
    EXPECT_EQ(keyStore.item(u"current"_s, u"xai_api_key"_s), QByteArray("older"));
}

TEST_F(ProviderKeyStatusTest, ReadsTheServicesInTheirOrder)
{
    const ProviderKeyStatus status(keychain);
    QStringList accounts;
    for (const FakeKeyStore::Call &call : keyStore.calls()) {
        if (call.service == u"current"_s) {
            accounts.append(call.account);
        }
    }
    EXPECT_EQ(accounts,
              (QStringList{u"openai_api_key"_s, u"gemini_api_key"_s, u"anthropic_api_key"_s, u"xai_api_key"_s}));
}

TEST_F(ProviderKeyStatusTest, TellsOfChangesOnly)
{
    ProviderKeyStatus status(keychain);
    const SignalCount changes(&status, &ProviderKeyStatus::changed);
    status.refresh();
    EXPECT_EQ(changes.size(), 0);
    keyStore.setItem(u"current"_s, u"openai_api_key"_s, "secret");
    status.refresh();
    EXPECT_EQ(changes.size(), 1);
    EXPECT_TRUE(status.hasAnyKey());
}

TEST_F(ProviderKeyStatusTest, IsUnknownUntilTheKeyStoreAnswers)
{
    keyStore.gate().close();
    const ProviderKeyStatus status(keychain);
    EXPECT_FALSE(status.hasAnyKey());
    EXPECT_FALSE(status.hasNoKey());
    EXPECT_TRUE(status.isRefreshing());
    keyStore.gate().open();
    EXPECT_TRUE(status.hasNoKey());
    EXPECT_FALSE(status.isRefreshing());
}

TEST_F(ProviderKeyStatusTest, ForgetsWhatAnEarlierRefreshFindsOut)
{
    keyStore.gate().close();
    keyStore.setStatus(FakeKeyStore::Operation::copyMatching, KeyStoreStatus::userCanceled);
    ProviderKeyStatus status(keychain); // its first question will be refused
    const SignalCount changes(&status, &ProviderKeyStatus::changed);
    keyStore.setStatus(FakeKeyStore::Operation::copyMatching, std::nullopt);
    keyStore.setItem(u"current"_s, u"openai_api_key"_s, "secret");
    status.refresh();
    keyStore.gate().open();
    EXPECT_TRUE(status.hasAnyKey());
    EXPECT_EQ(changes.size(), 1);
    EXPECT_FALSE(status.isRefreshing());
}

TEST_F(ProviderKeyStatusTest, OneRefusalEndsTheLookAndLeavesTheStatusUnknown)
{
    for (const QString &account : {u"openai_api_key"_s, u"gemini_api_key"_s, u"xai_api_key"_s}) {
        keyStore.setItem(u"current"_s, account, "secret");
    }
    for (const qint32 refusal : {KeyStoreStatus::userCanceled, KeyStoreStatus::interactionNotAllowed}) {
        refuse(refusal);
        const std::size_t before = keyStore.calls().size();
        const ProviderKeyStatus status(keychain);
        EXPECT_EQ(keyStore.calls().size() - before, 1U) << "whoever declines is asked once";
        EXPECT_FALSE(status.hasAnyKey());
        EXPECT_FALSE(status.hasNoKey());
        EXPECT_FALSE(status.isRefreshing());
        EXPECT_EQ(status.hasKey(AIProviderType::openAI), std::nullopt);
    }
}

TEST_F(ProviderKeyStatusTest, LeavesAKeyOutThatCannotBeRead)
{
    keyStore.setItem(u"current"_s, u"openai_api_key"_s, "secret");
    keyStore.setStatus(FakeKeyStore::Operation::copyMatching, u"openai_api_key"_s, KeyStoreStatus::authorizationFailed);
    ProviderKeyStatus status(keychain);
    EXPECT_FALSE(status.hasAnyKey());
    EXPECT_FALSE(status.hasNoKey()) << "it may be one";
    keyStore.setItem(u"current"_s, u"gemini_api_key"_s, "secret");
    status.look();
    EXPECT_TRUE(status.hasAnyKey());
    EXPECT_EQ(status.hasKey(AIProviderType::openAI), false);
    EXPECT_EQ(status.hasKey(AIProviderType::gemini), true);
}

TEST_F(ProviderKeyStatusTest, ForgetsThatThereWasNoKeyWhenTheStoreRefuses)
{
    ProviderKeyStatus status(keychain);
    EXPECT_TRUE(status.hasNoKey());
    const SignalCount changes(&status, &ProviderKeyStatus::changed);
    refuse(KeyStoreStatus::userCanceled);
    status.refresh();
    EXPECT_FALSE(status.hasNoKey());
    EXPECT_EQ(changes.size(), 1);
}

TEST_F(ProviderKeyStatusTest, KeepsWhatItFoundBeforeARefusal)
{
    ProviderKeyStatus status(keychain);
    keyStore.setItem(u"current"_s, u"openai_api_key"_s, "secret");
    after(status, AIProviderType::openAI, [this] { refuse(KeyStoreStatus::userCanceled); });
    status.refresh();
    EXPECT_TRUE(status.hasAnyKey());
    EXPECT_EQ(status.hasKey(AIProviderType::openAI), true);
    EXPECT_EQ(status.hasKey(AIProviderType::gemini), std::nullopt);
}

TEST_F(ProviderKeyStatusTest, IsSureOfNoKeyWhereNoKeyStoreRuns)
{
    keyStore.setItem(u"current"_s, u"openai_api_key"_s, "secret");
    refuse(KeyStoreStatus::notAvailable);
    ProviderKeyStatus status(keychain);
    EXPECT_TRUE(status.hasNoKey());
    EXPECT_EQ(keyStore.calls().size(), 1U);
    refuse(std::nullopt); // it was started
    status.look();
    EXPECT_TRUE(status.hasAnyKey());
}

TEST_F(ProviderKeyStatusTest, LooksNoFurtherAfterARefusalUntilItIsToRefresh)
{
    keyStore.setItem(u"current"_s, u"gemini_api_key"_s, "secret");
    refuse(KeyStoreStatus::userCanceled);
    ProviderKeyStatus status(keychain);
    const std::size_t before = keyStore.calls().size();
    refuse(std::nullopt);
    status.look();
    EXPECT_EQ(keyStore.calls().size(), before);
    status.refresh();
    EXPECT_TRUE(status.hasAnyKey());
    EXPECT_EQ(status.hasKey(AIProviderType::openAI), false);
    EXPECT_EQ(status.hasKey(AIProviderType::gemini), true);
}

TEST_F(ProviderKeyStatusTest, LooksOnceAtATime)
{
    keyStore.gate().close();
    ProviderKeyStatus status(keychain);
    status.look();
    EXPECT_EQ(keyStore.calls().size(), 1U);
    keyStore.gate().open();
    EXPECT_TRUE(status.hasNoKey());
    const std::size_t before = keyStore.calls().size();
    status.look();
    EXPECT_GT(keyStore.calls().size(), before) << "each page is made from what is stored now";
}

TEST_F(ProviderKeyStatusTest, MayGoWhileTheKeyStoreIsAsked)
{
    keyStore.gate().close();
    auto status = std::make_unique<ProviderKeyStatus>(keychain);
    status.reset();
    keyStore.gate().open();
    EXPECT_EQ(keyStore.calls().size(), 3U); // one account in three services, and no further one
}

} // namespace
} // namespace orvesa
