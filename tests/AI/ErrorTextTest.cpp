#include "AI/ErrorText.h"

#include <gtest/gtest.h>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

TEST(ErrorTextTest, aFailedTransferIsToldInOneLine)
{
    EXPECT_EQ(transferErrorText(u"Connection\r\nrefused "_s, QUrl(u"https://service.test/v1"_s)),
              u"Connection refused"_s);
}

TEST(ErrorTextTest, theQueryOfTheAddressIsNotTold)
{
    const QUrl url(u"https://service.test/v1?token=a%20b"_s);
    EXPECT_EQ(transferErrorText(u"No answer from https://service.test/v1?token=a%20b today"_s, url),
              u"No answer from https://service.test/v1 today"_s);
    EXPECT_EQ(transferErrorText(u"No answer from https://service.test/v1?token=a b today"_s, url),
              u"No answer from https://service.test/v1 today"_s);
    EXPECT_EQ(transferErrorText(u"Really?"_s, QUrl(u"https://service.test/v1"_s)), u"Really?"_s);
}

} // namespace

} // namespace orvesa
