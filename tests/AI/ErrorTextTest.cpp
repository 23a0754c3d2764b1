#include "AI/ErrorText.h"

#include <gtest/gtest.h>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

TEST(PlatformErrorText, ComesFromTheDesktopWhereItHasWords)
{
    EXPECT_EQ(platformErrorText(QNetworkReply::TimeoutError, u"Qt's"_s), u"Qt's"_s);
    setTransferWording([](QNetworkReply::NetworkError error) {
        return error == QNetworkReply::TimeoutError ? u"The request timed out."_s : QString();
    });
    EXPECT_EQ(platformErrorText(QNetworkReply::TimeoutError, u"Qt's"_s), u"The request timed out."_s);
    EXPECT_EQ(platformErrorText(QNetworkReply::HostNotFoundError, u"Qt's"_s), u"Qt's"_s);
    setTransferWording({});
}

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
