#include "AI/APIHTTPClient.h"
#include "AI/Outcome.h"
#include "service/LoopbackService.h"

#include <QSslConfiguration>

namespace orvesa {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

using service::LoopbackService;
using service::ServiceRequest;
using service::ServiceResponse;

class HTTPEncryptionTest : public ::testing::Test {
protected:
    HTTPEncryptionTest()
    {
        m_service.setResponder([](const ServiceRequest &) { return ServiceResponse::json("{}"); });
    }

    ~HTTPEncryptionTest() override { QSslConfiguration::setDefaultConfiguration(m_before); }

    void trust(const service::ServiceCertificate &certificate)
    {
        QSslConfiguration configuration = m_before;
        configuration.addCaCertificate(certificate.authority());
        QSslConfiguration::setDefaultConfiguration(configuration);
    }

    [[nodiscard]] Outcome<QByteArray> post()
    {
        return outcome(m_client.postJSON(QUrl(m_service.address() + u"/v1"_s), {{"x-api-key", "secret"}}, "{}"));
    }

    const QSslConfiguration m_before = QSslConfiguration::defaultConfiguration();
    LoopbackService m_service{LoopbackService::Transport::tls};
    QNetworkAccessManager m_manager;
    APIHTTPClient m_client{m_manager, 5s};
};

TEST_F(HTTPEncryptionTest, aCertificateOfAnUnknownAuthorityIsRefusedBeforeAnythingIsSent)
{
    const QString failure = post().failure();
    EXPECT_TRUE(failure.contains(u"certificate"_s)) << failure.toStdString();
    EXPECT_FALSE(failure.contains(u'\n'));
    EXPECT_TRUE(m_service.requests().empty());
}

TEST_F(HTTPEncryptionTest, aCertificateOfATrustedAuthorityIsTaken)
{
    trust(m_service.certificate());
    EXPECT_EQ(post().value, QByteArray("{}"));
}

TEST_F(HTTPEncryptionTest, aCertificateForAnotherHostIsRefused)
{
    trust(m_service.certificate());
    LoopbackService elsewhere(LoopbackService::Transport::tls, LoopbackService::Place::ownThread,
                              QHostAddress(u"127.0.0.2"_s));
    trust(elsewhere.certificate());
    const QString failure = outcome(m_client.get(QUrl(elsewhere.address()), {})).failure();
    EXPECT_TRUE(failure.contains(u"host name"_s)) << failure.toStdString();
    EXPECT_TRUE(elsewhere.requests().empty());
}

TEST_F(HTTPEncryptionTest, theConnectionOpenedAheadIsUsed)
{
    trust(m_service.certificate());
    m_client.preconnect(QUrl(m_service.address()));
    ASSERT_TRUE(m_service.waitUntil([this] { return m_service.handshakeCount() == 1; }));
    EXPECT_TRUE(post().value);
    EXPECT_EQ(m_service.connectionCount(), 1);
}

TEST_F(HTTPEncryptionTest, aRequestMadeRightAfterTheOpeningWaitsForThatConnection)
{
    trust(m_service.certificate());
    m_client.preconnect(QUrl(m_service.address()));
    EXPECT_TRUE(post().value);
    EXPECT_EQ(m_service.connectionCount(), 1);
}

TEST_F(HTTPEncryptionTest, openingAheadOpensNothingWhereAConnectionIsKept)
{
    trust(m_service.certificate());
    EXPECT_TRUE(post().value);
    m_client.preconnect(QUrl(m_service.address()));
    EXPECT_TRUE(post().value);
    EXPECT_EQ(m_service.connectionCount(), 1);
}

TEST_F(HTTPEncryptionTest, aRedirectToAnUnprotectedAddressIsNotFollowed)
{
    trust(m_service.certificate());
    LoopbackService plain;
    m_service.setScript({ServiceResponse::redirect(307, plain.address().toUtf8())});
    EXPECT_EQ(post().failure(), u"HTTP 307: moved"_s);
    EXPECT_EQ(plain.connectionCount(), 0);
}

TEST_F(HTTPEncryptionTest, aResetInsideAnEncryptedBodyIsAFailure)
{
    trust(m_service.certificate());
    ServiceResponse response = ServiceResponse::json(QByteArray(2000, 'x'));
    response.cutAfterBodyBytes = 1000;
    response.ending = ServiceResponse::Ending::reset;
    m_service.setScript({response});
    EXPECT_FALSE(post().value);
}

} // namespace

} // namespace orvesa
