#include "Models/AITask.h"
#include "Models/DecodingError.h"
#include "fakes/InterfaceLanguage.h"
#include "fakes/QtPrinting.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace orvesa {
namespace {

using namespace Qt::StringLiterals;

AITask decoded(const char *text)
{
    return aiTaskFromJSON(nlohmann::ordered_json::parse(text));
}

std::string decodingError(const char *text)
{
    try {
        (void)decoded(text);
    } catch (const DecodingError &error) {
        return error.what();
    }
    return "none";
}

TEST(AITask, isEqualWhenCaseAndPayloadAre)
{
    EXPECT_EQ(AITask(TranslateTask{u"Japanese"_s}), AITask(TranslateTask{u"Japanese"_s}));
    EXPECT_NE(AITask(TranslateTask{u"Japanese"_s}), AITask(TranslateTask{u"English"_s}));
    EXPECT_EQ(AITask(PolishTask{PolishMode::concise}), AITask(PolishTask{PolishMode::concise}));
    EXPECT_NE(AITask(PolishTask{PolishMode::concise}), AITask(PolishTask{PolishMode::naturalJapanese}));
    EXPECT_EQ(AITask(CustomTask{u"a"_s, u"b"_s}), AITask(CustomTask{u"a"_s, u"b"_s}));
    EXPECT_NE(AITask(CustomTask{u"a"_s, u"b"_s}), AITask(CustomTask{u"a"_s, u"c"_s}));
    EXPECT_NE(AITask(CustomTask{u"a"_s, u"b"_s}), AITask(CustomTask{u"c"_s, u"b"_s}));
    EXPECT_NE(AITask(TranslateTask{}), AITask(CustomTask{}));
}

TEST(AITaskDisplayName, namesAKnownLanguageInTheInterfaceLanguage)
{
    const AITask task = TranslateTask{u"Japanese"_s};
    EXPECT_EQ(displayName(task), u"Translate → Japanese"_s);
    const InterfaceLanguage chinese(AppLanguage::traditionalChinese);
    EXPECT_EQ(displayName(task), u"翻譯 → 日文"_s);
}

TEST(AITaskDisplayName, showsAnyOtherLanguageAsItIs)
{
    EXPECT_EQ(displayName(TranslateTask{u"French"_s}), u"Translate → French"_s);
    EXPECT_EQ(displayName(TranslateTask{u"japanese"_s}), u"Translate → japanese"_s);
    EXPECT_EQ(displayName(TranslateTask{u"%@ %1 {text}"_s}), u"Translate → %@ %1 {text}"_s);
    const InterfaceLanguage japanese(AppLanguage::japanese);
    EXPECT_EQ(displayName(TranslateTask{u"French"_s}), u"翻訳 → French"_s);
}

TEST(AITaskDisplayName, namesThePolishMode)
{
    EXPECT_EQ(displayName(PolishTask{PolishMode::businessJapanese}), u"Polish (Business Japanese)"_s);
    const InterfaceLanguage japanese(AppLanguage::japanese);
    EXPECT_EQ(displayName(PolishTask{PolishMode::concise}), u"推敲（簡潔化）"_s);
}

TEST(AITaskDisplayName, isThePromptsNameAsItIs)
{
    EXPECT_EQ(displayName(CustomTask{u"  Sum up %@ "_s, u"template"_s}), u"  Sum up %@ "_s);
    EXPECT_EQ(displayName(CustomTask{}), QString());
}

TEST(AITaskJSON, isAnObjectNamedAfterTheCase)
{
    EXPECT_EQ(aiTaskToJSON(TranslateTask{u"日本語"_s}).dump(), R"({"translate":{"targetLanguage":"日本語"}})");
    EXPECT_EQ(aiTaskToJSON(PolishTask{PolishMode::concise}).dump(), R"({"polish":{"mode":"concise"}})");
    EXPECT_EQ(aiTaskToJSON(CustomTask{u"n"_s, u"t {text}"_s}).dump(),
              R"({"custom":{"name":"n","template":"t {text}"}})");
}

TEST(AITaskJSON, comesBackEqual)
{
    const AITask tasks[] = {TranslateTask{u"Klingon \"x\""_s}, PolishTask{PolishMode::naturalJapanese},
                            CustomTask{u""_s, u"a\nb\u0001"_s}};
    for (const AITask &task : tasks) {
        EXPECT_EQ(decoded(aiTaskToJSON(task).dump().c_str()), task);
    }
}

TEST(AITaskJSON, ignoresFurtherInnerMembers)
{
    EXPECT_EQ(decoded(R"({"polish":{"extra":1,"mode":"concise"}})"), AITask(PolishTask{PolishMode::concise}));
}

TEST(AITaskJSON, needsExactlyOneMember)
{
    const std::string expected = "Invalid number of keys found, expected one.";
    EXPECT_EQ(decodingError("{}"), expected);
    EXPECT_EQ(decodingError(R"({"polish":{"mode":"concise"},"translate":{"targetLanguage":"English"}})"), expected);
    EXPECT_EQ(decodingError(R"({"polish":{"mode":"concise"},"other":1})"), expected);
    EXPECT_EQ(decodingError(R"({"other":{}})"), expected);
    EXPECT_EQ(decodingError(R"({"Polish":{"mode":"concise"}})"), expected);
}

TEST(AITaskJSON, rejectsAMissingOrIllTypedInnerMember)
{
    for (const char *text : {R"({"translate":{}})", R"({"translate":{"targetLanguage":1}})",
                             R"({"translate":{"targetLanguage":null}})", R"({"translate":"Japanese"})",
                             R"({"translate":null})", R"({"polish":{}})", R"({"polish":{"mode":"Concise"}})",
                             R"({"polish":{"mode":4}})", R"({"custom":{"name":"n"}})", R"({"custom":{"template":"t"}})",
                             R"({"custom":{"name":"n","template":["t"]}})", "[]", "null", "\"translate\"", "1"}) {
        EXPECT_NE(decodingError(text), "none") << text;
    }
}

} // namespace
} // namespace orvesa
