#include "AI/PromptTemplateService.h"

#include "AI/Outcome.h"

#include <gtest/gtest.h>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

[[nodiscard]] QString prompt(const AITask &task, const QString &text)
{
    return PromptTemplateService().prompt(task, text);
}

TEST(PromptTemplateServiceTest, translates)
{
    EXPECT_EQ(
        prompt(TranslateTask{u"Traditional Chinese"_s}, u"Hola.\n"_s),
        QString::fromUtf8("You are a professional translator.\nTranslate the following text into Traditional Chinese.\n"
                          "Preserve the original meaning, tone, formatting, line breaks, and terminology.\n"
                          "Return only the translated text. Do not add explanations.\n\nText:\nHola.\n"));
}

TEST(PromptTemplateServiceTest, polishesConcisely)
{
    EXPECT_EQ(prompt(PolishTask{PolishMode::concise}, u"T"_s),
              QString::fromUtf8("Please rewrite the following text to be clearer and more concise without changing its "
                                "meaning.\nReturn only the rewritten text. Do not add explanations.\n\nText:\nT"));
}

TEST(PromptTemplateServiceTest, polishesTraditionalChineseWithAFullWidthColon)
{
    EXPECT_EQ(prompt(PolishTask{PolishMode::traditionalChinese}, u"T"_s),
              QString::fromUtf8(
                  "你是一位繁體中文編輯。\n請在不改變原意的前提下，將以下文字修正成自然、清楚、好讀的繁體中文。\n"
                  "請只輸出修正後的文字，不要加解釋。\n\n文字：\nT"));
}

TEST(PromptTemplateServiceTest, polishesJapaneseWithAnASCIIColon)
{
    EXPECT_EQ(prompt(PolishTask{PolishMode::naturalJapanese}, u"T"_s),
              QString::fromUtf8("あなたは日本語ネイティブの編集者です。\n以下の文章を、意味を変えずに、自然で読みやすい"
                                "日本語に修正してください。\n"
                                "返答は修正後の文章のみ出力してください。説明は不要です。\n\n文章:\nT"));
    EXPECT_EQ(prompt(PolishTask{PolishMode::businessJapanese}, u"T"_s),
              QString::fromUtf8("あなたは日本語のビジネス文章を自然で丁寧に整えるアシスタントです。\n"
                                "以下の文章を、意味を変えずに、自然で失礼のないビジネス日本語に修正してください。\n"
                                "必要以上に硬くしすぎず、実務でそのまま送れる表現にしてください。\n"
                                "返答は修正後の文章のみ出力してください。説明は不要です。\n\n文章:\nT"));
}

TEST(PromptTemplateServiceTest, appendsTheTextToACustomPromptWithoutMarker)
{
    EXPECT_EQ(prompt(CustomTask{u"n"_s, u"Summarize:"_s}, u"abc"_s), u"Summarize:\n\nabc"_s);
    EXPECT_EQ(prompt(CustomTask{u"n"_s, u"Summarize: \n"_s}, u" abc "_s), u"Summarize: \n\n\n abc "_s);
    EXPECT_EQ(prompt(CustomTask{u"n"_s, QString()}, u"abc"_s), u"\n\nabc"_s);
}

TEST(PromptTemplateServiceTest, replacesEveryMarkerOfACustomPrompt)
{
    EXPECT_EQ(prompt(CustomTask{u"n"_s, u"A {text} B {text} C"_s}, u"abc"_s), u"A abc B abc C"_s);
    EXPECT_EQ(prompt(CustomTask{u"n"_s, u"{text}"_s}, u"a {text} b"_s), u"a {text} b"_s);
}

TEST(PromptTemplateServiceTest, knowsTheMarkerInLowerCaseOnly)
{
    EXPECT_EQ(prompt(CustomTask{u"n"_s, u"Do {TEXT}"_s}, u"abc"_s), u"Do {TEXT}\n\nabc"_s);
}

TEST(PromptTemplateServiceTest, namesALanguageBeyondTheListedOnes)
{
    EXPECT_TRUE(prompt(TranslateTask{u"Klingon"_s}, u"x"_s).contains(u"text into Klingon.\n"_s));
}

TEST(PromptTemplateServiceTest, replacesTheLanguageBeforeTheText)
{
    const QString textInLanguage = prompt(TranslateTask{u"{text}"_s}, u"abc"_s);
    EXPECT_TRUE(textInLanguage.contains(u"text into abc.\n"_s));
    EXPECT_TRUE(prompt(TranslateTask{u"English"_s}, u"{targetLanguage}"_s).endsWith(u"Text:\n{targetLanguage}"_s));
}

} // namespace

} // namespace orvesa
