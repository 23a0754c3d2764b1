#include "AI/JSONAnswer.h"

#include "AI/Outcome.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

[[nodiscard]] bool isInvalid(const QByteArray &body)
{
    try {
        static_cast<void>(decodedAnswer(body));
        return false;
    } catch (const AppError &error) {
        return error.kind() == AppError::Kind::invalidAPIResponse;
    }
}

TEST(JSONAnswerTest, takesObjectsOnly)
{
    EXPECT_FALSE(isInvalid("{}"));
    EXPECT_FALSE(isInvalid(" {\"a\":[1,2,{\"b\":null}]} \n"));
    for (const QByteArray body : {"", " ", "[]", "null", "1", "\"text\"", "{", "{}x", "{\"a\":1", "{\"a\":1,}",
                                  "{'a':1}", "<html></html>", "{\"a\":1e999999}"}) {
        EXPECT_TRUE(isInvalid(body)) << body.toStdString();
    }
}

TEST(JSONAnswerTest, refusesTextThatIsNotUnicode)
{
    EXPECT_TRUE(isInvalid("{\"a\":\"caf\xE9\"}"));
    EXPECT_TRUE(isInvalid("{\"a\":\"\xED\xA0\x80\"}"));
    EXPECT_TRUE(isInvalid("{\"a\":\"\xC0\x80\"}"));
    EXPECT_TRUE(isInvalid("{\"a\":\"\\ud800\"}"));
    EXPECT_TRUE(isInvalid("{\"a\":\"\\udc00\\ud800\"}"));
    EXPECT_EQ(requiredString(requiredMember(decodedAnswer("{\"a\":\"\\ud83d\\ude00\\u0000x\"}"), "a")),
              u"\U0001F600"_s + QChar(0) + u'x');
}

TEST(JSONAnswerTest, boundsTheDepthQuickly)
{
    QElapsedTimer timer;
    timer.start();
    EXPECT_TRUE(isInvalid(QByteArray(200'000, '[')));
    EXPECT_TRUE(isInvalid("{\"a\":" + QByteArray(200'000, '[') + QByteArray(200'000, ']') + '}'));
    EXPECT_TRUE(isInvalid(QByteArray("{\"a\":").repeated(200'000) + '1' + QByteArray(200'000, '}')));
    EXPECT_FALSE(isInvalid("{\"a\":" + QByteArray(400, '[') + QByteArray(400, ']') + '}'));
    EXPECT_LT(timer.elapsed(), 2000);
}

TEST(JSONAnswerTest, anObjectWithVeryManyMembersTakesNoLongTime)
{
    QByteArray body = "{";
    for (int member = 0; member < 300'000; ++member) {
        body += '"' + QByteArray::number(member) + "\":0,";
    }
    body += "\"last\":0}";
    QElapsedTimer timer;
    timer.start();
    EXPECT_FALSE(isInvalid(body));
    EXPECT_LT(timer.elapsed(), 10'000);
}

TEST(JSONAnswerTest, textsKeepEveryCharacter)
{
    const JSONAnswer answer = decodedAnswer("{\"a\":\"\xEF\xBB\xBFx\\u0000\\ud83d\\ude00\"}");
    EXPECT_EQ(requiredString(requiredMember(answer, "a")), u"\uFEFFx\0\U0001F600"_s);
}

TEST(JSONAnswerTest, encodesAnyText)
{
    nlohmann::ordered_json body;
    body["text"] = jsonText(u"日本/\"\\\n\U0001F600"_s);
    EXPECT_EQ(encodedRequest(body), QByteArray("{\"text\":\"日本/\\\"\\\\\\n😀\"}"));
    QString halves = u"a?b?c"_s;
    halves[1] = QChar(0xD800);
    halves[3] = QChar(0xDC00);
    body["text"] = jsonText(halves);
    EXPECT_EQ(encodedRequest(body), QByteArray("{\"text\":\"a\xEF\xBF\xBD"
                                               "b\xEF\xBF\xBD"
                                               "c\"}"));
    body["text"] = jsonText(QString(QChar(0xDBFF)) + u"\U0001F600"_s);
    EXPECT_EQ(encodedRequest(body), QByteArray("{\"text\":\"\xEF\xBF\xBD😀\"}"));
}

TEST(JSONAnswerTest, aBodyThatCannotBeEncodedSaysSo)
{
    nlohmann::ordered_json body;
    body["text"] = "caf\xE9";
    try {
        static_cast<void>(encodedRequest(body));
        FAIL();
    } catch (const AppError &error) {
        EXPECT_EQ(error, AppError::apiRequestFailed(u"Failed to encode request body."_s));
    }
}

TEST(JSONAnswerTest, addressesAreNeverRepaired)
{
    EXPECT_EQ(serviceURL(u"https://a.example/v1beta/models/m-1.5:generateContent"_s).path(),
              u"/v1beta/models/m-1.5:generateContent"_s);
    for (const QString &text : {u"https://a.example/a b"_s, u"https://a.example/日本"_s, u"https://a.example/%zz"_s,
                                u"https://a.example/a\nb"_s, u"https://a.example/<m>"_s, u"https://a.example/{m}"_s,
                                u"/only/path"_s, QString()}) {
        EXPECT_THROW(static_cast<void>(serviceURL(text)), AppError) << text.toStdString();
    }
}

} // namespace

} // namespace orvesa
