#include "AI/SystemProxies.h"

#include "AI/APIHTTPClient.h"
#include "AI/Outcome.h"
#include "service/LoopbackProxy.h"
#include "service/LoopbackService.h"

#include <QEventLoop>
#include <QSemaphore>
#include <QSslConfiguration>
#include <QThread>
#include <QTimer>

#include <atomic>

namespace orvesa {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

using service::LoopbackProxy;
using service::LoopbackService;
using service::ServiceRequest;
using service::ServiceResponse;

class SystemProxiesTest : public ::testing::Test {
protected:
    SystemProxiesTest()
    {
        QSslConfiguration configuration = m_before;
        configuration.addCaCertificate(m_service.certificate().authority());
        QSslConfiguration::setDefaultConfiguration(configuration);
        m_service.setResponder([](const ServiceRequest &) { return ServiceResponse::json("{}"); });
    }

    ~SystemProxiesTest() override
    {
        QSslConfiguration::setDefaultConfiguration(m_before);
        for (const char *name : {"https_proxy", "http_proxy", "no_proxy"}) {
            qunsetenv(name);
        }
    }

    /// The service under a name that only the proxy can reach.
    [[nodiscard]] QUrl remoteURL() const { return QUrl(u"https://service.test:%1/v1"_s.arg(m_service.port())); }

    [[nodiscard]] SystemProxies::Question answering(QNetworkProxy proxy)
    {
        return [this, proxy](const QNetworkProxyQuery &) {
            ++m_questions;
            return QList<QNetworkProxy>{proxy};
        };
    }

    [[nodiscard]] QNetworkProxy loopbackProxy() const
    {
        return QNetworkProxy(QNetworkProxy::HttpProxy, u"127.0.0.1"_s, m_proxy.port());
    }

    const QSslConfiguration m_before = QSslConfiguration::defaultConfiguration();
    LoopbackService m_service{LoopbackService::Transport::tls};
    LoopbackProxy m_proxy{m_service.port()};
    std::atomic<int> m_questions = 0;
    QNetworkAccessManager m_manager;
};

TEST_F(SystemProxiesTest, aRequestGoesThroughATunnelThatSeesNoKey)
{
    SystemProxies proxies(m_manager, answering(loopbackProxy()));
    APIHTTPClient client(m_manager, 5s, &proxies);
    EXPECT_EQ(outcome(client.postJSON(remoteURL(), {{"x-api-key", "secret"}}, "{}")).value, QByteArray("{}"));
    ASSERT_EQ(m_proxy.requests().size(), 1);
    EXPECT_TRUE(m_proxy.requests().front().startsWith("CONNECT service.test:"));
    EXPECT_FALSE(m_proxy.requests().front().contains("secret"));
    EXPECT_EQ(m_service.requests().at(0).header("x-api-key"), "secret");
}

TEST_F(SystemProxiesTest, theConnectionOpenedAheadIsATunnelToo)
{
    SystemProxies proxies(m_manager, answering(loopbackProxy()));
    APIHTTPClient client(m_manager, 5s, &proxies);
    client.preconnect(remoteURL());
    EXPECT_TRUE(outcome(client.postJSON(remoteURL(), {}, "{}")).value);
    EXPECT_TRUE(outcome(client.postJSON(remoteURL(), {}, "{}")).value);
    EXPECT_EQ(m_service.connectionCount(), 1);
    EXPECT_EQ(m_proxy.requests().size(), 1);
    EXPECT_EQ(m_questions, 2); // settings may change, so each request asks; the first one with the connection
}

TEST_F(SystemProxiesTest, thisMachineIsReachedDirectly)
{
    SystemProxies proxies(m_manager, answering(loopbackProxy()));
    APIHTTPClient client(m_manager, 5s, &proxies);
    EXPECT_TRUE(outcome(client.get(QUrl(m_service.address()), {})).value);
    EXPECT_EQ(m_questions, 0);
    EXPECT_TRUE(m_proxy.requests().isEmpty());
}

TEST_F(SystemProxiesTest, aProxyThatRefusesIsAFailureInOneLine)
{
    LoopbackService refusing;
    refusing.setResponder([](const ServiceRequest &) { return ServiceResponse::text(403, "no"); });
    SystemProxies proxies(m_manager, answering(QNetworkProxy(QNetworkProxy::HttpProxy, u"127.0.0.1"_s, refusing.port(),
                                                             u"user"_s, u"password-of-proxy"_s)));
    APIHTTPClient client(m_manager, 5s, &proxies);
    const QString failure = outcome(client.get(remoteURL(), {{"x-api-key", "secret"}})).failure();
    EXPECT_FALSE(failure.isEmpty());
    EXPECT_FALSE(failure.contains(u'\n') || failure.contains(u"secret"_s) || failure.contains(u"password"_s))
        << failure.toStdString();
    EXPECT_TRUE(m_service.requests().empty());
}

TEST_F(SystemProxiesTest, aSlowAnswerNeitherBlocksNorOutlivesAStop)
{
    QSemaphore answer;
    SystemProxies proxies(m_manager, [&](const QNetworkProxyQuery &) {
        answer.acquire();
        return QList<QNetworkProxy>{loopbackProxy()};
    });
    APIHTTPClient client(m_manager, 5s, &proxies);
    int ticks = 0;
    QTimer ticking;
    ticking.callOnTimeout(&ticking, [&] {
        if (++ticks == 20) {
            answer.release();
        }
    });
    ticking.start(1ms);
    EXPECT_TRUE(outcome(client.get(remoteURL(), {})).value);
    EXPECT_GE(ticks, 20);

    std::stop_source source;
    auto stopped = client.get(remoteURL(), {}, source.get_token());
    source.request_stop();
    EXPECT_TRUE(stopped.isReady());
    EXPECT_EQ(outcome(std::move(stopped)).failure(), u"Operation canceled"_s);
    answer.release();
    answer.release();
    EXPECT_TRUE(outcome(client.get(remoteURL(), {})).value);
    EXPECT_EQ(m_service.requests().size(), 2U);
}

TEST_F(SystemProxiesTest, theWaitForAnAnswerIsBounded)
{
    QSemaphore answer;
    SystemProxies proxies(m_manager, [&](const QNetworkProxyQuery &) {
        answer.acquire();
        return QList<QNetworkProxy>{};
    });
    APIHTTPClient client(m_manager, 50ms, &proxies);
    EXPECT_EQ(outcome(client.get(remoteURL(), {})).failure(), u"Socket operation timed out"_s);
    answer.release();
}

TEST_F(SystemProxiesTest, aQuestionThatHangsDoesNotHoldTheEnd)
{
    QSemaphore asked;
    QSemaphore answer;
    QThread *thread = nullptr;
    bool isKnown = false;
    {
        SystemProxies proxies(m_manager, [&](const QNetworkProxyQuery &) {
            thread = QThread::currentThread();
            asked.release();
            answer.acquire();
            return QList<QNetworkProxy>{};
        });
        proxies.lookUp(remoteURL(), &m_manager, [&] { isKnown = true; });
        asked.acquire();
    }
    // Still hanging, and gone by itself once it does not hang any more.
    ASSERT_TRUE(thread->isRunning());
    QEventLoop loop;
    QObject::connect(thread, &QObject::destroyed, &loop, &QEventLoop::quit);
    answer.release();
    loop.exec();
}

TEST_F(SystemProxiesTest, theEnvironmentNamesTheProxyAndItsExceptions)
{
    SystemProxies proxies(m_manager);
    APIHTTPClient client(m_manager, 5s, &proxies);
    qputenv("https_proxy", m_proxy.address().toUtf8());
    EXPECT_TRUE(outcome(client.get(remoteURL(), {})).value);
    EXPECT_EQ(m_proxy.requests().size(), 1);
    // A change while the program runs counts from the next request on.
    qputenv("no_proxy", "service.test");
    EXPECT_TRUE(outcome(client.get(remoteURL(), {})).error);
    EXPECT_EQ(m_proxy.requests().size(), 1);
}

} // namespace

} // namespace orvesa
