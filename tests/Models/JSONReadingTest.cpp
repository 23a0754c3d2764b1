#include "Models/JSONReading.h"
#include "Models/DecodingError.h"
#include "fakes/QtPrinting.h"

#include <gtest/gtest.h>

namespace orvesa::JSONReading {
namespace {

using namespace Qt::StringLiterals;

quint32 numberIn(const char *value)
{
    return requiredUInt32(JSON::parse(std::string("{\"n\":") + value + "}"), "n");
}

TEST(ReadingANumber, takesWhatFitsUnsigned32Bit)
{
    EXPECT_EQ(numberIn("0"), 0U);
    EXPECT_EQ(numberIn("-0"), 0U);
    EXPECT_EQ(numberIn("2304"), 2304U);
    EXPECT_EQ(numberIn("4294967295"), 4294967295U);
    EXPECT_EQ(numberIn("2.0"), 2U);
    EXPECT_EQ(numberIn("1e3"), 1000U);
    EXPECT_EQ(numberIn("4294967295.0"), 4294967295U);
    EXPECT_EQ(requiredUInt32(JSON{{"n", 7}}, "n"), 7U); // built as a signed number
}

TEST(ReadingANumber, rejectsWhatDoesNotFit)
{
    for (const char *value : {"-1", "4294967296", "18446744073709551616", "-9223372036854775808", "2.5", "-1.0",
                              "4294967296.0", "1e300", "-0.5", "true", "null", "\"2\"", "[2]", "{}"}) {
        EXPECT_THROW((void)numberIn(value), DecodingError) << value;
    }
    EXPECT_THROW((void)requiredUInt32(JSON{{"n", -7}}, "n"), DecodingError);
}

TEST(ReadingAText, takesTextOnly)
{
    EXPECT_EQ(requiredString(JSON::parse(R"({"s":"ü\u0000b"})"), "s"), QString(u"ü\0b"_s));
    EXPECT_EQ(requiredString(JSON::parse(R"({"s":""})"), "s"), QString());
    EXPECT_EQ(requiredString(JSON::parse(R"({"s":"\ufeffb\ufeff"})"), "s"), u"\ufeffb\ufeff"_s) << "every character";
    for (const char *text : {"{}", R"({"S":"x"})", R"({"s":null})", R"({"s":1})", R"({"s":["x"]})", "[]", "\"s\""}) {
        EXPECT_THROW((void)requiredString(JSON::parse(text), "s"), DecodingError) << text;
    }
}

TEST(ReadingAnOptionalMember, takesNullAsMissing)
{
    EXPECT_EQ(optionalMember(JSON::parse("{}"), "m"), nullptr);
    EXPECT_EQ(optionalMember(JSON::parse(R"({"m":null})"), "m"), nullptr);
    const JSON json = JSON::parse(R"({"m":false})");
    ASSERT_NE(optionalMember(json, "m"), nullptr);
    EXPECT_EQ(*optionalMember(json, "m"), JSON(false));
    EXPECT_THROW((void)optionalMember(JSON::parse("[]"), "m"), DecodingError);
}

TEST(DecodingFailure, namesTheMember)
{
    try {
        (void)requiredString(JSON::object(), "keyLabel");
        FAIL();
    } catch (const DecodingError &error) {
        EXPECT_STREQ(error.what(), "Member \"keyLabel\" is missing.");
    }
}

TEST(EncodedText, isAlwaysValidUTF8)
{
    EXPECT_EQ(encoded(u"日本"_s), "日本");
    const char16_t half[] = {0xD83D, u'a'};
    EXPECT_NO_THROW((void)JSON(encoded(QString::fromUtf16(half, 2))).dump());
}

} // namespace
} // namespace orvesa::JSONReading
