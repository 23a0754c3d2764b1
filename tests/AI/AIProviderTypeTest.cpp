#include "AI/AIProviderType.h"

#include "AI/AIProviderFactory.h"
#include "AI/APIHTTPClient.h"
#include "AI/Outcome.h"
#include "Core/KeychainService.h"
#include "fakes/FakeKeyStore.h"

#include <gtest/gtest.h>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

TEST(AIProviderTypeTest, listsTheServicesInOrder)
{
    const std::array<AIProviderType, 4> expected{AIProviderType::openAI, AIProviderType::gemini,
                                                 AIProviderType::anthropic, AIProviderType::xAI};
    EXPECT_EQ(allCases<AIProviderType>(), expected);
}

TEST(AIProviderTypeTest, rawValuesAreExact)
{
    EXPECT_EQ(rawValue(AIProviderType::openAI), u"openAI"_s);
    EXPECT_EQ(rawValue(AIProviderType::gemini), u"gemini"_s);
    EXPECT_EQ(rawValue(AIProviderType::anthropic), u"anthropic"_s);
    EXPECT_EQ(rawValue(AIProviderType::xAI), u"xAI"_s);
    EXPECT_EQ(fromRawValue<AIProviderType>(u"xAI"_s), AIProviderType::xAI);
    for (const QString &other : {u"OpenAI"_s, u"openai"_s, u"xai"_s, u" xAI"_s, QString()}) {
        EXPECT_FALSE(fromRawValue<AIProviderType>(other)) << other.toStdString();
    }
}

TEST(AIProviderTypeTest, namesAndAccounts)
{
    EXPECT_EQ(displayName(AIProviderType::openAI), u"OpenAI"_s);
    EXPECT_EQ(displayName(AIProviderType::gemini), u"Gemini"_s);
    EXPECT_EQ(displayName(AIProviderType::anthropic), u"Claude (Anthropic)"_s);
    EXPECT_EQ(displayName(AIProviderType::xAI), u"Grok (xAI)"_s);
    EXPECT_EQ(keychainAccount(AIProviderType::openAI), u"openai_api_key"_s);
    EXPECT_EQ(keychainAccount(AIProviderType::gemini), u"gemini_api_key"_s);
    EXPECT_EQ(keychainAccount(AIProviderType::anthropic), u"anthropic_api_key"_s);
    EXPECT_EQ(keychainAccount(AIProviderType::xAI), u"xai_api_key"_s);
}

TEST(AIProviderTypeTest, modelsBeginWithTheDefault)
{
    EXPECT_EQ(selectableModels(AIProviderType::openAI),
              (QStringList{u"gpt-5.4-mini"_s, u"gpt-5.4-nano"_s, u"gpt-5.4"_s, u"gpt-5.5"_s}));
    EXPECT_EQ(selectableModels(AIProviderType::gemini), (QStringList{u"gemini-3.1-flash-lite"_s, u"gemini-3.5-flash"_s,
                                                                     u"gemini-2.5-flash"_s, u"gemini-2.5-pro"_s}));
    EXPECT_EQ(selectableModels(AIProviderType::anthropic),
              (QStringList{u"claude-sonnet-5"_s, u"claude-sonnet-4-6"_s, u"claude-haiku-4-5"_s, u"claude-opus-4-8"_s}));
    EXPECT_EQ(selectableModels(AIProviderType::xAI),
              (QStringList{u"grok-4.3"_s, u"grok-4.20-0309-non-reasoning"_s, u"grok-4"_s}));
    EXPECT_EQ(defaultModel(AIProviderType::openAI), u"gpt-5.4-mini"_s);
    EXPECT_EQ(defaultModel(AIProviderType::gemini), u"gemini-3.1-flash-lite"_s);
    EXPECT_EQ(defaultModel(AIProviderType::anthropic), u"claude-sonnet-5"_s);
    EXPECT_EQ(defaultModel(AIProviderType::xAI), u"grok-4.3"_s);
}

TEST(AIProviderTypeTest, keyPagesAreEncryptedAddressesOfTheServices)
{
    const std::map<AIProviderType, QString> domains{{AIProviderType::openAI, u"openai.com"_s},
                                                    {AIProviderType::gemini, u"google.com"_s},
                                                    {AIProviderType::anthropic, u"anthropic.com"_s},
                                                    {AIProviderType::xAI, u"x.ai"_s}};
    for (const auto &[type, domain] : domains) {
        EXPECT_TRUE(apiKeyURL(type).isValid());
        EXPECT_EQ(apiKeyURL(type).scheme(), u"https"_s);
        EXPECT_TRUE(apiKeyURL(type).host().endsWith(u'.' + domain)) << domain.toStdString();
    }
}

TEST(AIProviderFactoryTest, makesAFreshProviderOfTheType)
{
    FakeKeyStore store;
    KeychainService keychain(store, u"service"_s, {});
    QNetworkAccessManager manager;
    APIHTTPClient client(manager);
    const AIProviderFactory factory(keychain, client, ServiceAddresses());
    for (const AIProviderType type : allCases<AIProviderType>()) {
        const auto first = factory.provider(type);
        const auto second = factory.provider(type);
        EXPECT_EQ(first->providerType(), type);
        EXPECT_NE(first, second);
    }
}

} // namespace

} // namespace orvesa
