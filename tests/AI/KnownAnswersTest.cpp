// What the services' references say that answers look like, one file each; the fuzzers begin with the same files.

#include "AI/AnthropicProvider.h"
#include "AI/GeminiProvider.h"
#include "AI/OpenAIChatAPI.h"
#include "Models/AppError.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

#include <map>
#include <optional>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

using Decoder = QString (*)(const QByteArray &);

const QString invalid = u"<invalid>"_s;

/// The text, the message of a failed request, or `invalid`.
[[nodiscard]] QString decoded(Decoder decoder, const QByteArray &body)
{
    try {
        return decoder(body);
    } catch (const AppError &error) {
        return error.kind() == AppError::Kind::invalidAPIResponse ? invalid : error.message();
    }
}

/// Every file of the folder is in the table and gives what the table says.
void expectAll(const char *folder, Decoder decoder, const std::map<QString, QString> &expected)
{
    const QDir files(QStringLiteral(ORVESA_CORPUS "/") + QLatin1String(folder));
    QStringList names;
    for (const auto &[name, text] : expected) {
        names.append(name);
        QFile file(files.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
        EXPECT_EQ(decoded(decoder, file.readAll()), text) << name.toStdString();
    }
    QStringList present = files.entryList(QDir::Files);
    names.sort();
    present.sort();
    EXPECT_EQ(present, names);
}

TEST(KnownAnswersTest, chatCompletions)
{
    expectAll("chat-completions", OpenAIChatAPI::answerText,
              {
                  {u"answer.json"_s, u"Guten Morgen!"_s},
                  {u"array.json"_s, invalid},
                  {u"blank-content.json"_s, u""_s},
                  {u"bom.json"_s, u"x"_s},
                  {u"content-filter.json"_s, invalid},
                  {u"cut.json"_s, invalid},
                  {u"duplicate-members.json"_s, u"y"_s},
                  {u"empty-content.json"_s, invalid},
                  {u"error.json"_s, invalid},
                  {u"invalid-utf8.json"_s, invalid},
                  {u"length.json"_s, u"cut off in the mid"_s},
                  {u"lone-surrogate.json"_s, invalid},
                  {u"missing-role.json"_s, invalid},
                  {u"nesting.json"_s, invalid},
                  {u"no-choices.json"_s, invalid},
                  {u"null-content-refusal.json"_s, invalid},
                  {u"numbers.json"_s, invalid},
                  {u"parts-content.json"_s, invalid},
                  {u"reasoning.json"_s, u"答え"_s},
                  {u"surrogates.json"_s, u"😀 \0"_s},
                  {u"tool-call.json"_s, invalid},
                  {u"trailing.json"_s, invalid},
                  {u"two-choices.json"_s, u"first"_s},
              });
}

TEST(KnownAnswersTest, messages)
{
    const QString declined = u"The model declined to process this text."_s;
    expectAll("messages", AnthropicProvider::answerText,
              {
                  {u"answer.json"_s, u"Guten Morgen!"_s},
                  {u"blank.json"_s, invalid},
                  {u"cut.json"_s, invalid},
                  {u"error.json"_s, invalid},
                  {u"escapes.json"_s, u"\"\\/\b\f\n\r\té😀"_s},
                  {u"invalid-utf8.json"_s, invalid},
                  {u"max-tokens.json"_s, u"cut"_s},
                  {u"nesting.json"_s, invalid},
                  {u"no-content.json"_s, invalid},
                  {u"no-type.json"_s, invalid},
                  {u"null-stop.json"_s, u"x"_s},
                  {u"null-text.json"_s, invalid},
                  {u"pause-turn.json"_s, u"x"_s},
                  {u"redacted-thinking.json"_s, u"ok"_s},
                  {u"refusal-empty.json"_s, declined},
                  {u"refusal.json"_s, declined},
                  {u"server-tool.json"_s, u"found"_s},
                  {u"string-content.json"_s, invalid},
                  {u"thinking.json"_s, u"Guten\nMorgen"_s},
                  {u"tool-use.json"_s, invalid},
                  {u"wrong-stop.json"_s, invalid},
                  {u"wrong-text.json"_s, invalid},
              });
}

TEST(KnownAnswersTest, generateContent)
{
    expectAll("generate-content", GeminiProvider::answerText,
              {
                  {u"answer.json"_s, u"Guten Morgen!"_s},
                  {u"blocked-candidate.json"_s, invalid},
                  {u"blocked-prompt.json"_s, invalid},
                  {u"control.json"_s, u"\0\u001f\u0085x"_s},
                  {u"empty.json"_s, invalid},
                  {u"error.json"_s, invalid},
                  {u"function-call.json"_s, invalid},
                  {u"grounding.json"_s, u"x"_s},
                  {u"inline-data.json"_s, u"seen"_s},
                  {u"invalid-utf8.json"_s, invalid},
                  {u"nesting.json"_s, invalid},
                  {u"no-candidates.json"_s, invalid},
                  {u"no-parts.json"_s, invalid},
                  {u"null-levels.json"_s, invalid},
                  {u"null-text.json"_s, u"x"_s},
                  {u"thought-part.json"_s, u"**Weighing words**Hallo"_s},
                  {u"two-candidates.json"_s, u"first"_s},
                  {u"two-parts.json"_s, u"Guten Morgen"_s},
                  {u"wrong-later.json"_s, invalid},
              });
}

} // namespace

} // namespace orvesa
