#include "Models/CustomPrompt.h"
#include "Models/DecodingError.h"
#include "fakes/InterfaceLanguage.h"
#include "fakes/QtPrinting.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace orvesa {
namespace {

using namespace Qt::StringLiterals;

CustomPrompt decoded(const char *text)
{
    return customPromptFromJSON(nlohmann::ordered_json::parse(text));
}

const QUuid sampleID = QUuid::fromString("{0a1b2c3d-4e5f-6071-8293-a4b5c6d7e8f9}"_L1);

CustomPrompt sample()
{
    return {sampleID, u"Sum up"_s, u"Summarize: {text}"_s, KeyCombo{35, 0x900, u"P"_s}};
}

TEST(CustomPrompt, getsAFreshIdentityWhenItIsMade)
{
    const CustomPrompt first;
    const CustomPrompt second;
    EXPECT_FALSE(first.id.isNull());
    EXPECT_NE(first.id, second.id);
    EXPECT_EQ(first.id.version(), QUuid::Random);
    EXPECT_EQ(first.hotKey, std::nullopt);
}

TEST(CustomPrompt, isEqualWhenAllFourFieldsAre)
{
    EXPECT_EQ(sample(), sample());
    CustomPrompt other = sample();
    other.id = QUuid::createUuid();
    EXPECT_NE(other, sample());
    other = sample();
    other.name = u"x"_s;
    EXPECT_NE(other, sample());
    other = sample();
    other.promptTemplate = u"x"_s;
    EXPECT_NE(other, sample());
    other = sample();
    other.hotKey->keyLabel = u"x"_s;
    EXPECT_NE(other, sample());
}

TEST(CustomPromptName, isShownWithoutOuterBlanks)
{
    CustomPrompt prompt = sample();
    prompt.name = u" \u3000Sum  up\n"_s;
    EXPECT_EQ(prompt.shownName(), u"Sum  up"_s);
    EXPECT_EQ(prompt.name, u" \u3000Sum  up\n"_s);
}

TEST(CustomPromptName, isTheLocalizedUntitledWhenNothingRemains)
{
    CustomPrompt prompt = sample();
    for (const QString &name : {u""_s, u"   "_s, u"\t\n\u00A0"_s}) {
        prompt.name = name;
        EXPECT_EQ(prompt.shownName(), u"Untitled Prompt"_s);
        EXPECT_EQ(prompt.task(), AITask(CustomTask{u"Untitled Prompt"_s, u"Summarize: {text}"_s}));
    }
    const InterfaceLanguage japanese(AppLanguage::japanese);
    EXPECT_EQ(prompt.shownName(), u"無題のプロンプト"_s);
    EXPECT_EQ(prompt.task(), AITask(CustomTask{u"無題のプロンプト"_s, u"Summarize: {text}"_s}));
}

TEST(CustomPromptTask, carriesTheShownNameAndTheTemplateUntouched)
{
    CustomPrompt prompt = sample();
    prompt.name = u" n "_s;
    prompt.promptTemplate = u" t \n"_s;
    EXPECT_EQ(prompt.task(), AITask(CustomTask{u"n"_s, u" t \n"_s}));
}

TEST(CustomPromptJSON, hasTheFieldNamesInOrder)
{
    EXPECT_EQ(customPromptToJSON(sample()).dump(),
              R"({"id":"0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F9","name":"Sum up","template":"Summarize: {text}",)"
              R"("hotKey":{"keyCode":35,"carbonModifiers":2304,"keyLabel":"P"}})");
}

TEST(CustomPromptJSON, omitsAnAbsentShortcut)
{
    CustomPrompt prompt = sample();
    prompt.hotKey.reset();
    EXPECT_EQ(customPromptToJSON(prompt).dump(),
              R"({"id":"0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F9","name":"Sum up","template":"Summarize: {text}"})");
}

TEST(CustomPromptJSON, comesBackEqual)
{
    EXPECT_EQ(customPromptFromJSON(customPromptToJSON(sample())), sample());
}

TEST(CustomPromptJSON, mayLackTheShortcutOrHoldNull)
{
    constexpr auto base = R"({"id":"0a1b2c3d-4e5f-6071-8293-a4b5c6d7e8f9","name":"n","template":"t"})";
    EXPECT_EQ(decoded(base), (CustomPrompt{sampleID, u"n"_s, u"t"_s, std::nullopt}));
    EXPECT_EQ(
        decoded(R"({"id":"0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F9","name":"n","template":"t","hotKey":null,"more":1})"),
        (CustomPrompt{sampleID, u"n"_s, u"t"_s, std::nullopt}));
}

TEST(CustomPromptJSON, isRejectedWithoutAnIdentity)
{
    EXPECT_THROW((void)decoded(R"({"name":"n","template":"t"})"), DecodingError);
}

TEST(CustomPromptJSON, isRejectedWhenAMemberIsMissingOrIllTyped)
{
    for (const char *text : {
             R"({"id":"0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F9","template":"t"})",
             R"({"id":"0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F9","name":"n"})",
             R"({"id":"0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F9","name":null,"template":"t"})",
             R"({"id":"0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F9","name":"n","template":5})",
             R"({"id":"0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F9","name":"n","template":"t","hotKey":"P"})",
             R"({"id":"0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F9","name":"n","template":"t","hotKey":{"keyCode":1}})",
             R"({"id":7,"name":"n","template":"t"})",
             "[]",
         }) {
        EXPECT_THROW((void)decoded(text), DecodingError) << text;
    }
}

TEST(CustomPromptJSON, takesAnIdentityInItsStandardFormOnly)
{
    for (const char *id : {"", "x", "{0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F9}", "0A1B2C3D4E5F60718293A4B5C6D7E8F9",
                           "0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8FG", "0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F",
                           "0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F90", "0A1B2C3D04E5F-6071-8293-A4B5C6D7E8F9"}) {
        nlohmann::ordered_json json = customPromptToJSON(sample());
        json["id"] = id;
        EXPECT_THROW((void)customPromptFromJSON(json), DecodingError) << id;
    }
}

} // namespace
} // namespace orvesa
