#include "AI/ProviderTest.h"

#include "AI/AnthropicProvider.h"
#include "AI/GeminiProvider.h"
#include "AI/OpenAIChatAPI.h"

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

/// Where each service wants its key, and the paths of its two requests.
struct WireRow {
    AIProviderType type;
    QByteArray keyHeader;
    QByteArray keyPrefix;
    QByteArray generatePath;
    QByteArray validatePath;
};

class EveryProviderTest : public ProviderTest, public ::testing::WithParamInterface<WireRow> {
protected:
    [[nodiscard]] AIProviderType type() const { return GetParam().type; }
    [[nodiscard]] AIProviderConfig config() const { return configFor(u"m"_s); }
    [[nodiscard]] Outcome<bool> validated(const QString &key)
    {
        const auto provider = m_factory.provider(type());
        return outcome(provider->validateAPIKey(key));
    }

    void answerWell()
    {
        m_service.setResponder(
            [](const Request &request) { return service::protocolResponse(request, u"\n  Hola \n"_s); });
    }
};

TEST_P(EveryProviderTest, givesTheTrimmedAnswer)
{
    storeKey(type(), "key");
    answerWell();
    EXPECT_EQ(generate(type(), config()).value, u"Hola"_s);
    const Request request = m_service.requests().at(0);
    EXPECT_EQ(request.method, "POST");
    EXPECT_EQ(request.target, GetParam().generatePath);
    EXPECT_EQ(request.header("Content-Type"), "application/json");
    EXPECT_EQ(request.header(GetParam().keyHeader), GetParam().keyPrefix + "key");
    EXPECT_EQ(service::promptOf(request), u"Do: abc"_s);
    EXPECT_FALSE(request.target.contains("key"));
    EXPECT_FALSE(request.body.contains("key"));
}

TEST_P(EveryProviderTest, sendsTheKeyWithItsBlanks)
{
    storeKey(type(), " key ");
    answerWell();
    ASSERT_TRUE(generate(type(), config()).value);
    EXPECT_EQ(m_service.requests().at(0).header(GetParam().keyHeader), GetParam().keyPrefix + " key ");
}

TEST_P(EveryProviderTest, aMissingOrBlankKeySendsNothing)
{
    EXPECT_TRUE(generate(type(), config()).hasKind(AppError::Kind::missingAPIKey));
    for (const QByteArray key : {"", "   ", " \n\t", "\u3000\u00a0"}) {
        storeKey(type(), key);
        EXPECT_TRUE(generate(type(), config()).hasKind(AppError::Kind::missingAPIKey));
    }
    EXPECT_EQ(m_service.connectionCount(), 0);
}

TEST_P(EveryProviderTest, aForbiddenAddressSendsNothingButTheKeyComesFirst)
{
    const AIProviderFactory factory(m_keychain, m_client, addressesAt(u"http://service.example"_s));
    const auto provider = factory.provider(type());
    const auto run = [&] { return outcome(provider->generate(u"abc"_s, PolishTask{}, config())); };
    EXPECT_TRUE(run().hasKind(AppError::Kind::missingAPIKey));
    storeKey(type(), "key");
    EXPECT_TRUE(run().failure().contains(u"_BASE_URL must be"_s));
    EXPECT_TRUE(outcome(provider->validateAPIKey(u"key"_s)).failure().contains(u"_BASE_URL must be"_s));
}

TEST_P(EveryProviderTest, validatesTheGivenKeyByReadingTheModels)
{
    storeKey(type(), "stored");
    answerWell();
    EXPECT_TRUE(validated(u" given "_s).value);
    const Request request = m_service.requests().at(0);
    EXPECT_EQ(request.method, "GET");
    EXPECT_EQ(request.target, GetParam().validatePath);
    EXPECT_EQ(request.header(GetParam().keyHeader), GetParam().keyPrefix + " given ");
    EXPECT_TRUE(m_store.calls().empty());
}

TEST_P(EveryProviderTest, validationLooksAtTheStatusOnly)
{
    m_service.setScript({Response::text(299, "not JSON"), Response::text(401, "{\"error\":\"bad\"}")});
    EXPECT_TRUE(validated(u"given"_s).value);
    EXPECT_EQ(validated(u"given"_s).failure(), u"HTTP 401: {\"error\":\"bad\"}"_s);
}

TEST_P(EveryProviderTest, passesFailuresOfTheTransferOn)
{
    storeKey(type(), "key");
    m_service.setScript({Response::text(429, "slow down")});
    EXPECT_EQ(generate(type(), config()).failure(), u"HTTP 429: slow down"_s);
    Response cut = Response::json("{}");
    cut.cutAfterBytes = 0;
    m_service.setScript({cut});
    EXPECT_EQ(generate(type(), config()).failure(), u"Connection closed"_s);
}

TEST_P(EveryProviderTest, anAnswerThatCannotBeDecodedIsInvalid)
{
    for (const QByteArray &body :
         {QByteArray(), QByteArray("hello"), QByteArray("<html></html>"), QByteArray("[]"), QByteArray("{}"),
          QByteArray("null"), QByteArray("{\"choices\":1,\"content\":1,\"candidates\":1}"),
          QByteArray("{\"a\":\"\xFF\"}"), QByteArray("{\"choices\":[]}{"),
          "{\"choices\":" + QByteArray(200'000, '[') + QByteArray(200'000, ']') + '}'}) {
        EXPECT_TRUE(isInvalid(type(), body)) << body.left(80).toStdString();
    }
}

TEST_P(EveryProviderTest, anyTextMakesAValidBody)
{
    storeKey(type(), "key");
    answerWell();
    QString text = u"\"quotes\" \\ / \n\t 日本語 \U0001F600 {text}"_s;
    text += QChar(0xD800);
    text += QChar(0);
    ASSERT_TRUE(generate(type(), config(), text).value);
    text.replace(QChar(0xD800), QChar(QChar::ReplacementCharacter));
    EXPECT_EQ(service::promptOf(m_service.requests().at(0)), u"Do: "_s + text);
}

TEST_P(EveryProviderTest, aTypedModelIsSentUnchanged)
{
    const QByteArray body = sentBody(type(), u"my-own-model@1"_s, false);
    const Request request = m_service.requests().back();
    EXPECT_TRUE(body.contains("\"my-own-model@1\"") || request.target.contains("/my-own-model@1:"));
}

TEST_P(EveryProviderTest, markupInAnAnswerStaysText)
{
    storeKey(type(), "key");
    m_service.setResponder(
        [](const Request &request) { return service::protocolResponse(request, u"<b>x</b> &amp; <script>"_s); });
    EXPECT_EQ(generate(type(), config()).value, u"<b>x</b> &amp; <script>"_s);
}

TEST_P(EveryProviderTest, aStopEndsTheGeneration)
{
    storeKey(type(), "key");
    m_service.setScript({Response::silence()});
    std::stop_source source;
    const auto provider = m_factory.provider(type());
    auto task = provider->generate(u"abc"_s, PolishTask{}, config(), source.get_token());
    ASSERT_TRUE(m_service.waitForRequests(1));
    source.request_stop();
    EXPECT_EQ(outcome(std::move(task)).failure(), u"Operation canceled"_s);
    EXPECT_TRUE(m_service.waitUntil([this] { return m_service.closedConnections().size() == 1; }));
}

TEST_P(EveryProviderTest, connectsAheadToItsOwnAddress)
{
    m_factory.preconnect(type());
    EXPECT_TRUE(m_service.waitUntil([this] { return m_service.connectionCount() == 1; }));
    EXPECT_TRUE(m_service.requests().empty());
}

TEST_P(EveryProviderTest, connectingAheadToAForbiddenAddressDoesNothing)
{
    const AIProviderFactory factory(m_keychain, m_client, addressesAt(u"http://service.example"_s));
    EXPECT_NO_THROW(factory.preconnect(type()));
    EXPECT_EQ(m_manager.findChild<QObject *>(), nullptr);
}

INSTANTIATE_TEST_SUITE_P(
    Services, EveryProviderTest,
    ::testing::Values(WireRow{AIProviderType::openAI, "Authorization", "Bearer ", "/v1/chat/completions", "/v1/models"},
                      WireRow{AIProviderType::gemini, "x-goog-api-key", "", "/v1beta/models/m:generateContent",
                              "/v1beta/models"},
                      WireRow{AIProviderType::anthropic, "x-api-key", "", "/v1/messages", "/v1/models"},
                      WireRow{AIProviderType::xAI, "Authorization", "Bearer ", "/v1/chat/completions", "/v1/models"}),
    [](const auto &instance) { return rawValue(instance.param.type).toStdString(); });

class ChatProviderTest : public ProviderTest, public ::testing::WithParamInterface<AIProviderType> {};

TEST_P(ChatProviderTest, theBodyIsTheSameWithThinkingOnAndOff)
{
    const QByteArray expected =
        "{\"model\":\"gpt-5.4-mini\",\"messages\":[{\"role\":\"user\",\"content\":\"Do: abc\"}]}";
    EXPECT_EQ(sentBody(GetParam(), u"gpt-5.4-mini"_s, false), expected);
    EXPECT_EQ(sentBody(GetParam(), u"gpt-5.4-mini"_s, true), expected);
}

TEST_P(ChatProviderTest, readsTheFirstChoiceOnly)
{
    EXPECT_EQ(generated(GetParam(),
                        "{\"choices\":[{\"message\":{\"role\":\"assistant\",\"content\":\" \\n first\\n \"}},"
                        "{\"message\":{\"role\":\"assistant\",\"content\":\"second\"}}]}")
                  .value,
              u"first"_s);
}

TEST_P(ChatProviderTest, blanksAreAnEmptyAnswerAndNothingIsNone)
{
    EXPECT_EQ(generated(GetParam(), "{\"choices\":[{\"message\":{\"role\":\"assistant\",\"content\":\"   \"}}]}").value,
              u""_s);
    EXPECT_TRUE(isInvalid(GetParam(), "{\"choices\":[{\"message\":{\"role\":\"assistant\",\"content\":\"\"}}]}"));
    EXPECT_TRUE(isInvalid(GetParam(), "{\"choices\":[]}"));
}

TEST_P(ChatProviderTest, everyRequiredMemberIsRequired)
{
    for (const QByteArray body :
         {"{\"choices\":null}", "{\"choices\":{}}", "{\"choices\":[1]}", "{\"choices\":[{}]}",
          "{\"choices\":[{\"message\":null}]}", "{\"choices\":[{\"message\":{\"content\":\"x\"}}]}",
          "{\"choices\":[{\"message\":{\"role\":\"assistant\"}}]}",
          "{\"choices\":[{\"message\":{\"role\":\"assistant\",\"content\":null}}]}",
          "{\"choices\":[{\"message\":{\"role\":1,\"content\":\"x\"}}]}",
          "{\"choices\":[{\"message\":{\"role\":\"assistant\",\"content\":[\"x\"]}}]}",
          "{\"choices\":[{\"message\":{\"role\":\"assistant\",\"content\":\"x\"}},{}]}"}) {
        EXPECT_TRUE(isInvalid(GetParam(), body)) << body.toStdString();
    }
}

INSTANTIATE_TEST_SUITE_P(Services, ChatProviderTest, ::testing::Values(AIProviderType::openAI, AIProviderType::xAI),
                         [](const auto &instance) { return rawValue(instance.param).toStdString(); });

class AnthropicProviderTest : public ProviderTest {
protected:
    static constexpr AIProviderType type = AIProviderType::anthropic;
};

TEST_F(AnthropicProviderTest, sendsTheThinkingModeAlways)
{
    EXPECT_EQ(
        sentBody(type, u"claude-sonnet-5"_s, false),
        QByteArray(
            "{\"model\":\"claude-sonnet-5\",\"max_tokens\":8192,\"messages\":[{\"role\":\"user\",\"content\":\"Do: "
            "abc\"}],\"thinking\":{\"type\":\"disabled\"}}"));
    EXPECT_EQ(
        sentBody(type, u"claude-sonnet-5"_s, true),
        QByteArray(
            "{\"model\":\"claude-sonnet-5\",\"max_tokens\":8192,\"messages\":[{\"role\":\"user\",\"content\":\"Do: "
            "abc\"}],\"thinking\":{\"type\":\"adaptive\"}}"));
    EXPECT_EQ(m_service.requests().back().header("anthropic-version"), "2023-06-01");
    ASSERT_TRUE(outcome(m_factory.provider(type)->validateAPIKey(u"k"_s)).value);
    EXPECT_EQ(m_service.requests().back().header("anthropic-version"), "2023-06-01");
}

TEST_F(AnthropicProviderTest, joinsTheTextBlocks)
{
    EXPECT_EQ(
        generated(type,
                  "{\"content\":[{\"type\":\"thinking\",\"thinking\":\"hm\",\"text\":\"no\"},"
                  "{\"type\":\"text\",\"text\":\" one\\n\"},{\"type\":\"text\"},{\"type\":\"text\",\"text\":null},"
                  "{\"type\":\"text\",\"text\":\"two \"}]}")
            .value,
        u"one\ntwo"_s);
}

TEST_F(AnthropicProviderTest, aRefusalIsAFailureWhateverTheText)
{
    const QString refused = u"The model declined to process this text."_s;
    EXPECT_EQ(
        generated(type, "{\"content\":[{\"type\":\"text\",\"text\":\"no\"}],\"stop_reason\":\"refusal\"}").failure(),
        refused);
    EXPECT_EQ(generated(type, "{\"content\":[],\"stop_reason\":\"refusal\"}").failure(), refused);
}

TEST_F(AnthropicProviderTest, everyOtherReasonToStopIsFine)
{
    for (const QByteArray reason :
         {"", ",\"stop_reason\":null", ",\"stop_reason\":\"max_tokens\"", ",\"stop_reason\":\"Refusal\""}) {
        EXPECT_EQ(generated(type, "{\"content\":[{\"type\":\"text\",\"text\":\"cut o\"}]" + reason + '}').value,
                  u"cut o"_s);
    }
}

TEST_F(AnthropicProviderTest, withoutTextThereIsNoAnswer)
{
    for (const QByteArray body :
         {"{\"content\":[]}", "{\"content\":[{\"type\":\"tool_use\",\"id\":\"t\",\"input\":{}}]}",
          "{\"content\":[{\"type\":\"text\",\"text\":\" \\n\"}]}", "{\"content\":[{\"type\":\"Text\",\"text\":\"x\"}]}",
          "{\"stop_reason\":\"end_turn\"}", "{\"stop_reason\":\"refusal\"}", "{\"content\":null}",
          "{\"content\":[{\"text\":\"x\"}]}", "{\"content\":[{\"type\":\"text\",\"text\":1}]}",
          "{\"content\":[{\"type\":\"text\",\"text\":\"x\"}],\"stop_reason\":1}",
          "{\"content\":[null,{\"type\":\"text\",\"text\":\"x\"}]}"}) {
        EXPECT_TRUE(isInvalid(type, body)) << body.toStdString();
    }
}

class GeminiProviderTest : public ProviderTest {
protected:
    static constexpr AIProviderType type = AIProviderType::gemini;
    static constexpr const char *start = "{\"contents\":[{\"parts\":[{\"text\":\"Do: abc\"}]}]";
};

TEST_F(GeminiProviderTest, thinkingIsALevelForTheThirdGeneration)
{
    EXPECT_EQ(sentBody(type, u"gemini-3.1-flash-lite"_s, true),
              start + QByteArray(",\"generationConfig\":{\"thinkingConfig\":{\"thinkingLevel\":\"high\"}}}"));
    EXPECT_EQ(sentBody(type, u"gemini-3.1-flash-lite"_s, false),
              start + QByteArray(",\"generationConfig\":{\"thinkingConfig\":{\"thinkingLevel\":\"minimal\"}}}"));
}

TEST_F(GeminiProviderTest, thinkingIsABudgetBefore)
{
    EXPECT_EQ(sentBody(type, u"gemini-2.5-flash"_s, false),
              start + QByteArray(",\"generationConfig\":{\"thinkingConfig\":{\"thinkingBudget\":0}}}"));
    EXPECT_EQ(sentBody(type, u"gemini-2.5-pro"_s, true), start + QByteArray("}"));
    EXPECT_EQ(sentBody(type, u"Gemini-3.5-flash"_s, true), start + QByteArray("}"));
}

TEST_F(GeminiProviderTest, aModelThatMakesNoAddressSendsNothing)
{
    storeKey(type, "key");
    for (const QString &model : {u"two words"_s, u"日本"_s, u"a%b"_s, u"a\nb"_s, u"<m>"_s}) {
        EXPECT_TRUE(generate(type, configFor(model)).hasKind(AppError::Kind::invalidAPIResponse))
            << model.toStdString();
    }
    EXPECT_EQ(m_service.connectionCount(), 0);
}

TEST_F(GeminiProviderTest, joinsThePartsOfTheFirstCandidate)
{
    EXPECT_EQ(
        generated(type,
                  "{\"candidates\":[{\"content\":{\"parts\":[{\"text\":\" one\"},{\"inlineData\":{}},{\"text\":null},"
                  "{\"text\":\" two\\n\"}]}},{\"content\":{\"parts\":[{\"text\":\"never\"}]}}]}")
            .value,
        u"one two"_s);
}

TEST_F(GeminiProviderTest, withoutTextThereIsNoAnswer)
{
    for (const QByteArray body : {"{}", "{\"candidates\":null}", "{\"candidates\":[]}", "{\"candidates\":[{}]}",
                                  "{\"candidates\":[{\"content\":{}}]}", "{\"candidates\":[{\"content\":null}]}",
                                  "{\"candidates\":[{\"content\":{\"parts\":[]}}]}",
                                  "{\"candidates\":[{\"content\":{\"parts\":[{\"text\":\" \"}]}}]}",
                                  "{\"promptFeedback\":{\"blockReason\":\"SAFETY\"}}",
                                  "{\"candidates\":[{},{\"content\":{\"parts\":[{\"text\":\"second\"}]}}]}",
                                  "{\"candidates\":[{\"content\":{\"parts\":[{\"text\":1}]}}]}",
                                  "{\"candidates\":[{\"content\":{\"parts\":{}}}]}", "{\"candidates\":[1]}"}) {
        EXPECT_TRUE(isInvalid(type, body)) << body.toStdString();
    }
}

TEST_F(ProviderTest, aModelOnlyAtTheOtherChatServiceGoesThere)
{
    // The two services share a protocol but neither address nor key.
    Service other;
    QProcessEnvironment environment;
    environment.insert(u"OPENAI_BASE_URL"_s, m_service.address() + u"/v1"_s);
    environment.insert(u"XAI_BASE_URL"_s, other.address() + u"/v1"_s);
    const AIProviderFactory factory(m_keychain, m_client, ServiceAddresses(environment));
    storeKey(AIProviderType::openAI, "first");
    storeKey(AIProviderType::xAI, "second");
    other.setResponder([](const Request &request) { return service::protocolResponse(request, u"x"_s); });
    ASSERT_TRUE(
        outcome(factory.provider(AIProviderType::xAI)->generate(u"abc"_s, PolishTask{}, configFor(u"m"_s))).value);
    EXPECT_EQ(other.requests().at(0).header("Authorization"), "Bearer second");
    EXPECT_EQ(m_service.connectionCount(), 0);
}

} // namespace

} // namespace orvesa
