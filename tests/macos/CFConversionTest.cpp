#include "Platform/macos/CFConversion.h"

#include "macos/RecorderTest.h"

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

class CFConversionTest : public tests::RecorderTest {};

} // namespace

TEST_F(CFConversionTest, CarriesTextsUnchanged)
{
    for (const QString &text : {QString(), u"a"_s, u"\t blank \n"_s, u"日本語 🎉"_s, QString(1000, u'x')}) {
        EXPECT_EQ(CFConversion::text(CFConversion::string(text).get()), text);
    }
}

TEST_F(CFConversionTest, CarriesBytesUnchanged)
{
    for (const QByteArray &bytes : {QByteArray(), QByteArray("a"), QByteArray("\0\xff\xfe\n", 4)}) {
        EXPECT_EQ(CFConversion::bytes(CFConversion::data(bytes).get()), bytes);
    }
}

TEST_F(CFConversionTest, MakesDictionariesThatKeepTheirContents)
{
    CFOwner<CFDictionaryRef> dictionary;
    {
        const CFOwner key = CFConversion::string(u"key"_s);
        const CFOwner value = CFConversion::string(u"value"_s);
        dictionary = CFConversion::dictionary({{key.get(), value.get()}, {value.get(), kCFBooleanTrue}});
    }
    EXPECT_EQ(recorders::checked(dictionary.get(), "the test")->description(), "{key: value, value: true}");
}

TEST_F(CFConversionTest, OwnersReleaseOnce)
{
    CFOwner<CFStringRef> first = CFConversion::string(u"one"_s);
    CFOwner<CFStringRef> second = std::move(first);
    EXPECT_FALSE(first);
    first = CFOwner<CFStringRef>::retaining(second.get());
    EXPECT_EQ(first.get(), second.get());
    second = CFConversion::string(u"two"_s);
    EXPECT_EQ(CFConversion::text(first.get()), u"one"_s);
    EXPECT_EQ(recorders::liveObjects(), 2);
}

} // namespace orvesa
