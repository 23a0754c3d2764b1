#include "Platform/macos/CFNetworkWording.h"

#include "macos/RecorderTest.h"

namespace orvesa {

using namespace Qt::StringLiterals;
using tests::Calls;

namespace {

class CFNetworkWordingTest : public tests::RecorderTest {};

} // namespace

TEST_F(CFNetworkWordingTest, SaysWhatTheSystemSays)
{
    EXPECT_EQ(CFNetworkWording::text(QNetworkReply::TimeoutError), u"要求がタイムアウトになりました。"_s);
    EXPECT_EQ(recorders::calls(), (Calls{"kCFErrorDomainCFNetwork -1001"}));
}

TEST_F(CFNetworkWordingTest, LeavesToOthersWhatTheSystemOnlyNumbers)
{
    EXPECT_EQ(CFNetworkWording::text(QNetworkReply::HostNotFoundError), QString());
    EXPECT_EQ(CFNetworkWording::text(QNetworkReply::ProtocolFailure), QString());
    EXPECT_EQ(recorders::calls(), (Calls{"kCFErrorDomainCFNetwork -1003"}));
}

TEST_F(CFNetworkWordingTest, KnowsTheNumbers)
{
    for (const auto error : {QNetworkReply::ConnectionRefusedError, QNetworkReply::RemoteHostClosedError,
                             QNetworkReply::SslHandshakeFailedError, QNetworkReply::TemporaryNetworkFailureError,
                             QNetworkReply::TooManyRedirectsError}) {
        EXPECT_EQ(CFNetworkWording::text(error), QString());
    }
    EXPECT_EQ(recorders::calls(),
              (Calls{"kCFErrorDomainCFNetwork -1004", "kCFErrorDomainCFNetwork -1005", "kCFErrorDomainCFNetwork -1200",
                     "kCFErrorDomainCFNetwork -1009", "kCFErrorDomainCFNetwork -1007"}));
}

} // namespace orvesa
