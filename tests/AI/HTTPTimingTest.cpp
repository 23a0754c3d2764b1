#include "AI/HTTPTest.h"

#include <QElapsedTimer>
#include <QTimer>

#include <algorithm>

namespace orvesa {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

class HTTPTimingTest : public HTTPTest {
protected:
    static constexpr auto shortTimeout = 150ms;

    [[nodiscard]] bool serviceSawTheEnd(std::size_t count = 1)
    {
        return m_service.waitUntil([this, count] { return m_service.closedConnections().size() >= count; });
    }

    APIHTTPClient m_impatient{m_manager, shortTimeout};
    const QString m_timedOut = u"Socket operation timed out"_s;
    const QString m_canceled = u"Operation canceled"_s;
};

TEST_F(HTTPTimingTest, theTimeoutIsSixtySeconds)
{
    EXPECT_EQ(APIHTTPClient::defaultTimeout, 60s);
}

TEST_F(HTTPTimingTest, silenceEndsTheTransferAfterTheTimeout)
{
    m_service.setScript({Response::silence()});
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(outcome(m_impatient.postJSON(url(), {}, "{}")).failure(), m_timedOut);
    EXPECT_GE(timer.elapsed(), shortTimeout.count() * 9 / 10); // an ordinary timer is exact to a twentieth
    EXPECT_LT(timer.elapsed(), 5000);
    EXPECT_TRUE(serviceSawTheEnd());
    EXPECT_EQ(m_service.closedConnections().at(0).closedBy, service::ClosedConnection::Side::peer);
}

TEST_F(HTTPTimingTest, silenceInsideTheBodyEndsTheTransfer)
{
    Response response = Response::text(200, "0123456789");
    response.pieceBytes = 5;
    response.pieceInterval = 10s;
    m_service.setScript({response});
    EXPECT_EQ(outcome(m_impatient.get(url(), {})).failure(), m_timedOut);
}

TEST_F(HTTPTimingTest, aSlowAnswerSucceedsAsLongAsBytesKeepComing)
{
    Response response = Response::text(200, "0123456789abcdefghijABCDEFGHIJ");
    response.pieceBytes = 2;
    response.pieceInterval = shortTimeout / 5;
    m_service.setScript({response});
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(outcome(m_impatient.get(url(), {})).value, response.body);
    EXPECT_GT(timer.elapsed(), 2 * shortTimeout.count());
}

TEST_F(HTTPTimingTest, anAnswerThatNeverEndsIsGivenUp)
{
    // Longer than elsewhere: on a busy machine none of the fifty pieces may be late by as much.
    constexpr auto timeout = 400ms;
    APIHTTPClient client(m_manager, timeout);
    Response response = Response::text(200, QByteArray(1000, 'x'));
    response.pieceBytes = 1;
    response.pieceInterval = timeout / 5;
    m_service.setScript({response});
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(outcome(client.get(url(), {})).failure(), m_timedOut);
    EXPECT_GE(timer.elapsed(), 9 * timeout.count());
    EXPECT_LT(timer.elapsed(), 20 * timeout.count()); // all of it would take two hundred
}

TEST_F(HTTPTimingTest, aServiceThatSendsByteByByteBlocksNothing)
{
    // A second of a real service is ten milliseconds here, and so is the time-out of sixty.
    constexpr auto second = 10ms;
    Response response = Response::text(200, QByteArray(100, 'x'));
    response.pieceBytes = 1;
    response.pieceInterval = second;
    m_service.setScript({response});
    APIHTTPClient client(m_manager, 60 * second);
    std::chrono::nanoseconds longestGap{0};
    QElapsedTimer sinceTick;
    QTimer ticking;
    ticking.callOnTimeout(&ticking, [&] {
        longestGap = std::max(longestGap, std::chrono::nanoseconds(sinceTick.nsecsElapsed()));
        sinceTick.start();
    });
    sinceTick.start();
    ticking.start(1ms);
    EXPECT_EQ(outcome(client.get(url(), {})).value, response.body);
    // The transfer took longer than the time-out, and the event loop ran all the while.
    EXPECT_LT(longestGap, 30 * second);
}

TEST_F(HTTPTimingTest, aSlowHandshakeIsBoundedToo)
{
    // Accepts connections and never says a word, which a TLS client waits for.
    QUrl address = url();
    address.setScheme(u"https"_s);
    QElapsedTimer timer;
    timer.start();
    EXPECT_TRUE(outcome(m_impatient.get(address, {})).error);
    EXPECT_LT(timer.elapsed(), 5000);
}

TEST_F(HTTPTimingTest, aStopRequestClosesTheConnection)
{
    m_service.setScript({Response::silence()});
    std::stop_source source;
    auto task = m_client.postJSON(url(), {}, "{}", source.get_token());
    ASSERT_TRUE(m_service.waitForRequests(1));
    EXPECT_TRUE(m_service.closedConnections().empty());
    source.request_stop();
    // Whoever starts the next request must not find this one's failure coming in after it.
    EXPECT_TRUE(task.isReady());
    EXPECT_EQ(outcome(std::move(task)).failure(), m_canceled);
    EXPECT_TRUE(serviceSawTheEnd());
}

TEST_F(HTTPTimingTest, aStopRequestInsideTheBodyClosesTheConnection)
{
    Response response = Response::text(200, "0123456789");
    response.pieceBytes = 5;
    response.pieceInterval = 60s;
    m_service.setScript({response});
    std::stop_source source;
    auto task = m_client.get(url(), {}, source.get_token());
    ASSERT_TRUE(m_service.waitForRequests(1));
    source.request_stop();
    EXPECT_EQ(outcome(std::move(task)).failure(), m_canceled);
    EXPECT_TRUE(serviceSawTheEnd());
}

TEST_F(HTTPTimingTest, aStopRequestedBeforeSendsNothing)
{
    std::stop_source source;
    source.request_stop();
    EXPECT_EQ(outcome(m_client.postJSON(url(), {}, "{}", source.get_token())).failure(), m_canceled);
    EXPECT_EQ(m_service.connectionCount(), 0);
}

TEST_F(HTTPTimingTest, aStopAfterTheEndChangesNothing)
{
    m_service.setScript({Response::json("{}")});
    std::stop_source source;
    EXPECT_TRUE(outcome(m_client.get(url(), {}, source.get_token())).value);
    source.request_stop();
}

TEST_F(HTTPTimingTest, cancellingOneRequestLeavesTheOther)
{
    std::vector<service::Answer> held;
    std::mutex mutex;
    m_service.setResponder(service::Responder([&](const Request &, const service::Answer &answer) {
        const std::lock_guard lock(mutex);
        held.push_back(answer);
    }));
    std::stop_source source;
    auto cancelled = m_client.postJSON(url(), {}, "one", source.get_token());
    ASSERT_TRUE(m_service.waitForRequests(1));
    auto kept = m_client.postJSON(url(), {}, "two");
    ASSERT_TRUE(m_service.waitForRequests(2));
    source.request_stop();
    EXPECT_EQ(outcome(std::move(cancelled)).failure(), m_canceled);
    EXPECT_TRUE(serviceSawTheEnd());
    const std::lock_guard lock(mutex);
    held.at(1)(Response::text(200, "second"));
    EXPECT_EQ(outcome(std::move(kept)).value, QByteArray("second"));
}

} // namespace

} // namespace orvesa
