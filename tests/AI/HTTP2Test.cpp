// The client against a server that is not ours and offers HTTP/2: nghttpd, which sends an upload back.

#include "AI/APIHTTPClient.h"
#include "AI/Outcome.h"
#include "service/ServiceCertificate.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QSslConfiguration>
#include <QTemporaryDir>

namespace orvesa {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// An address of this machine that no other test process uses, so that a fixed port is free there.
[[nodiscard]] QHostAddress ownAddress()
{
    const auto process = static_cast<quint32>(QCoreApplication::applicationPid());
    return QHostAddress((quint32{127} << 24) | ((process & 0x3FFFFF) + 0x100));
}

class HTTP2Test : public ::testing::Test {
protected:
    void SetUp() override
    {
        QSslConfiguration configuration = m_before;
        configuration.addCaCertificate(m_certificate.authority());
        QSslConfiguration::setDefaultConfiguration(configuration);
        write(u"key.pem"_s, m_certificate.privateKey().toPem());
        write(u"certificate.pem"_s, m_certificate.certificate().toPem());
        startServer();
    }

    void TearDown() override
    {
        endServer();
        QSslConfiguration::setDefaultConfiguration(m_before);
    }

    /// The key is made for this run and goes with it.
    void write(const QString &name, const QByteArray &bytes)
    {
        QFile file(m_folder.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    }

    void startServer()
    {
        m_server.setProgram(u"/usr/sbin/nghttpd"_s);
        m_server.setArguments({u"--verbose"_s, u"--echo-upload"_s, u"--address"_s, m_address.toString(), u"--htdocs"_s,
                               m_folder.path(), QString::number(m_port), m_folder.filePath(u"key.pem"_s),
                               m_folder.filePath(u"certificate.pem"_s)});
        m_log.clear();
        m_server.setProcessChannelMode(QProcess::MergedChannels);
        m_server.start();
        ASSERT_TRUE(awaitLog("listen"));
    }

    void endServer()
    {
        m_server.terminate();
        EXPECT_TRUE(m_server.waitForFinished());
    }

    /// Until the server has reported this.
    [[nodiscard]] bool awaitLog(const QByteArray &part)
    {
        m_log += m_server.readAll();
        while (!m_log.contains(part) && m_server.waitForReadyRead(10'000)) {
            m_log += m_server.readAll();
        }
        return m_log.contains(part);
    }

    [[nodiscard]] QUrl url(const QString &path) const
    {
        return QUrl(u"https://%1:%2%3"_s.arg(m_address.toString()).arg(m_port).arg(path));
    }

    [[nodiscard]] Outcome<QByteArray> post(const QByteArray &body)
    {
        return outcome(m_client.postJSON(url(u"/echo"_s), {{"x-api-key", "secret"}}, body));
    }

    const QSslConfiguration m_before = QSslConfiguration::defaultConfiguration();
    const QHostAddress m_address = ownAddress();
    const int m_port = 8443;
    service::ServiceCertificate m_certificate{m_address};
    QTemporaryDir m_folder;
    QProcess m_server;
    QByteArray m_log;
    QNetworkAccessManager m_manager;
    APIHTTPClient m_client{m_manager, 5s};
};

TEST_F(HTTP2Test, isUsedWhereTheServiceOffersItOverOneConnection)
{
    EXPECT_EQ(post("{\"first\":1}").value, QByteArray("{\"first\":1}"));
    EXPECT_EQ(post("{\"second\":2}").value, QByteArray("{\"second\":2}"));
    // The identifier of the second stream; with HTTP/1.1 there is none.
    EXPECT_TRUE(awaitLog("send DATA frame <length=12")) << m_log.constData();
    EXPECT_TRUE(m_log.contains("stream_id=3")) << m_log.constData();
    EXPECT_TRUE(m_log.contains("x-api-key: secret"));
    EXPECT_FALSE(m_log.contains("[id=2]")) << m_log.constData();
}

TEST_F(HTTP2Test, usesTheConnectionOpenedAhead)
{
    m_client.preconnect(url(u"/"_s));
    EXPECT_TRUE(post("{}").value);
    EXPECT_TRUE(post("{}").value);
    EXPECT_TRUE(awaitLog("stream_id=3"));
    EXPECT_FALSE(m_log.contains("[id=2]")) << m_log.constData();
}

TEST_F(HTTP2Test, requestsAtOnceShareTheConnectionAndDoNotMix)
{
    ASSERT_TRUE(post("{}").value);
    auto first = m_client.postJSON(url(u"/echo"_s), {}, QByteArray(200'000, '1'));
    auto second = m_client.postJSON(url(u"/echo"_s), {}, QByteArray(200'000, '2'));
    EXPECT_EQ(outcome(std::move(second)).value, QByteArray(200'000, '2'));
    EXPECT_EQ(outcome(std::move(first)).value, QByteArray(200'000, '1'));
    EXPECT_FALSE(m_log.contains("[id=2]"));
}

TEST_F(HTTP2Test, cancellingOneRequestLeavesTheOther)
{
    ASSERT_TRUE(post("{}").value);
    std::stop_source source;
    auto cancelled = m_client.postJSON(url(u"/echo"_s), {}, QByteArray(1'000'000, '1'), source.get_token());
    auto kept = m_client.postJSON(url(u"/echo"_s), {}, "{\"kept\":1}");
    source.request_stop();
    EXPECT_EQ(outcome(std::move(cancelled)).failure(), u"Operation canceled"_s);
    EXPECT_EQ(outcome(std::move(kept)).value, QByteArray("{\"kept\":1}"));
}

TEST_F(HTTP2Test, anErrorStatusIsAFailureWithItsBody)
{
    const QString failure = outcome(m_client.get(url(u"/nothing-here"_s), {})).failure();
    EXPECT_TRUE(failure.startsWith(u"HTTP 404: "_s)) << failure.toStdString();
}

TEST_F(HTTP2Test, anAnswerBeyondTheBoundIsRefused)
{
    write(u"large"_s, QByteArray(APIHTTPClient::maximumBodyBytes + 1, 'x'));
    EXPECT_EQ(outcome(m_client.get(url(u"/large"_s), {})).failure(),
              u"The answer is larger than 16 MB and was refused."_s);
}

TEST_F(HTTP2Test, aServerThatStartsAgainIsReachedAgain)
{
    ASSERT_TRUE(post("{}").value);
    endServer();
    startServer();
    const auto again = post("{\"again\":1}");
    EXPECT_EQ(again.value, QByteArray("{\"again\":1}")) << again.failure().toStdString();
}

} // namespace

} // namespace orvesa
