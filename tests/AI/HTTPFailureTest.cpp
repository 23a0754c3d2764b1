#include "AI/HTTPTest.h"

#include <QElapsedTimer>
#include <QFile>

namespace orvesa {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

class HTTPFailureTest : public HTTPTest {
protected:
    /// Well below the bodies of these tests, with room for the memory that a sanitizer holds back.
    static constexpr qint64 boundedMemory = 6 * APIHTTPClient::maximumBodyBytes;

    /// Forgets the peak so far; gives what is resident now, in bytes.
    [[nodiscard]] static qint64 restartedPeakMemory()
    {
        QFile references(u"/proc/self/clear_refs"_s);
        EXPECT_TRUE(references.open(QIODevice::WriteOnly) && references.write("5") == 1);
        references.close();
        return peakMemory();
    }

    /// The most memory that the process had resident since then.
    [[nodiscard]] static qint64 peakMemory()
    {
        QFile status(u"/proc/self/status"_s);
        EXPECT_TRUE(status.open(QIODevice::ReadOnly));
        for (const QByteArray &line : status.readAll().split('\n')) {
            if (line.startsWith("VmHWM:")) {
                return line.sliced(6).simplified().split(' ').first().toLongLong() * 1024;
            }
        }
        return 0;
    }
};

TEST_F(HTTPFailureTest, nobodyListens)
{
    const QUrl gone = [] {
        const service::LoopbackService shortLived;
        return QUrl(shortLived.address());
    }();
    EXPECT_EQ(outcome(m_client.get(gone, {})).failure(), u"Connection refused"_s);
}

TEST_F(HTTPFailureTest, hostDoesNotExist)
{
    const QString failure = outcome(m_client.get(QUrl(u"http://nowhere.invalid/models?secret=1"_s), {})).failure();
    EXPECT_TRUE(failure.contains(u"nowhere.invalid"_s));
    EXPECT_FALSE(failure.contains(u"secret"_s));
    EXPECT_FALSE(failure.contains(u'\n'));
}

TEST_F(HTTPFailureTest, connectionClosedBeforeAnAnswerSendsThePostOnce)
{
    for (const auto ending : {Response::Ending::close, Response::Ending::reset}) {
        Response response = Response::json("{}");
        response.cutAfterBytes = 0;
        response.ending = ending;
        const auto before = m_service.requests().size();
        m_service.setResponder([response](const Request &) { return response; });
        EXPECT_EQ(post("{\"text\":1}").failure(), u"Connection closed"_s);
        EXPECT_EQ(m_service.requests().size(), before + 1);
    }
}

TEST_F(HTTPFailureTest, connectionClosedBeforeAnAnswerToAGetIsAFailure)
{
    Response response = Response::json("{}");
    response.cutAfterBytes = 0;
    m_service.setResponder([response](const Request &) { return response; });
    EXPECT_EQ(get().failure(), u"Connection closed"_s);
}

TEST_F(HTTPFailureTest, connectionClosedInsideTheHeaders)
{
    for (const auto ending : {Response::Ending::close, Response::Ending::reset}) {
        Response response = Response::json("{}");
        response.cutAfterBytes = 30;
        response.ending = ending;
        m_service.setResponder([response](const Request &) { return response; });
        EXPECT_EQ(post("{}").error.has_value(), true);
    }
}

TEST_F(HTTPFailureTest, halfABodyIsNoSuccess)
{
    for (const auto framing : {Response::Framing::contentLength, Response::Framing::chunked}) {
        for (const auto ending : {Response::Ending::close, Response::Ending::reset}) {
            for (const auto coding : {Response::Coding::identity, Response::Coding::gzip}) {
                Response response =
                    Response::json("{\"answer\":\"" + QByteArray("long enough to be cut ").repeated(40) + "\"}");
                response.framing = framing;
                response.ending = ending;
                response.coding = coding;
                response.cutAfterBodyBytes = 20;
                m_service.setScript({response});
                const auto result = post("{}");
                EXPECT_FALSE(result.value) << "framing " << static_cast<int>(framing) << ", ending "
                                           << static_cast<int>(ending) << ", coding " << static_cast<int>(coding);
                EXPECT_FALSE(result.failure().isEmpty());
                EXPECT_FALSE(result.failure().startsWith(u"HTTP"_s));
            }
        }
    }
}

TEST_F(HTTPFailureTest, aCompressedBodyUpToTheCloseThatIsCutIsNoSuccess)
{
    Response response = Response::json("{\"answer\":\"" + QByteArray("long enough to be cut ").repeated(40) + "\"}");
    response.framing = Response::Framing::untilClose;
    response.coding = Response::Coding::gzip;
    response.cutAfterBodyBytes = 20;
    EXPECT_EQ(answered(response).failure(), u"Connection closed"_s);
}

TEST_F(HTTPFailureTest, halfAnErrorBodyIsABrokenTransfer)
{
    Response response = Response::text(500, "something went wrong");
    response.cutAfterBodyBytes = 9;
    EXPECT_EQ(answered(response).failure(), u"Connection closed"_s);
}

TEST_F(HTTPFailureTest, anErrorBodyInBracketsKeepsItsStatus)
{
    // No length to compare with, and an end that no JSON has.
    Response response = Response::text(429, "[rate limited] try later");
    response.framing = Response::Framing::chunked;
    EXPECT_EQ(answered(response).failure(), u"HTTP 429: [rate limited] try later"_s);
}

TEST_F(HTTPFailureTest, anAnswerThatIsNotHTTPIsAFailure)
{
    Response response;
    response.rawHead = "220 mail.example ESMTP ready\r\n";
    response.ending = Response::Ending::close;
    const auto result = answered(response);
    EXPECT_FALSE(result.value);
    EXPECT_TRUE(result.error);
}

TEST_F(HTTPFailureTest, aLyingCompressionHeaderIsAFailure)
{
    Response response = Response::text(200, "this is not compressed at all");
    response.headers.emplace_back("Content-Encoding", "gzip");
    EXPECT_FALSE(answered(response).value);
}

TEST_F(HTTPFailureTest, aBodyAtTheBoundIsTakenAndOneByteMoreIsRefused)
{
    for (const auto framing : {Response::Framing::contentLength, Response::Framing::chunked}) {
        Response response = Response::json({});
        response.framing = framing;
        response.generatedBytes = APIHTTPClient::maximumBodyBytes;
        const auto largest = answered(response);
        ASSERT_TRUE(largest.value);
        EXPECT_EQ(largest.value->size(), APIHTTPClient::maximumBodyBytes);
        ++response.generatedBytes;
        EXPECT_EQ(answered(response).failure(), u"The answer is larger than 16 MB and was refused."_s);
    }
}

TEST_F(HTTPFailureTest, aHugeBodyIsRefusedAndNeverHeld)
{
    constexpr qint64 hundredMegabytes = 100 * 1024 * 1024;
    for (const auto framing :
         {Response::Framing::contentLength, Response::Framing::chunked, Response::Framing::untilClose}) {
        Response response = Response::json({});
        response.framing = framing;
        response.generatedBytes = hundredMegabytes;
        const qint64 before = restartedPeakMemory();
        EXPECT_EQ(answered(response).failure(), u"The answer is larger than 16 MB and was refused."_s);
        EXPECT_LT(peakMemory() - before, boundedMemory);
    }
    EXPECT_TRUE(m_service.waitUntil([this] { return m_service.closedConnections().size() == 3; }));
}

TEST_F(HTTPFailureTest, aSmallBodyThatExpandsBeyondTheBoundIsRefused)
{
    Response response = Response::json(QByteArray(100 * 1024 * 1024, 'x'));
    response.coding = Response::Coding::gzip;
    response.body = response.codedBody();
    response.coding = Response::Coding::identity;
    response.headers.emplace_back("Content-Encoding", "gzip");
    ASSERT_LT(response.body.size(), 1024 * 1024);
    const qint64 before = restartedPeakMemory();
    EXPECT_EQ(answered(response).failure(), u"The answer is larger than 16 MB and was refused."_s);
    // Qt's decompression takes a share of its own, the same for any size of body.
    EXPECT_LT(peakMemory() - before, boundedMemory);
}

TEST_F(HTTPFailureTest, memoryStaysBoundedWhileTheProgramIsBusy)
{
    Response response = Response::json({});
    response.generatedBytes = 100 * 1024 * 1024;
    response.framing = Response::Framing::chunked;
    m_service.setScript({response});
    auto task = m_client.get(url(), {});
    ASSERT_TRUE(m_service.waitForRequests(1));
    const qint64 before = restartedPeakMemory();
    // The main thread does something else; what arrives meanwhile must wait in the network, not in memory.
    QElapsedTimer busy;
    busy.start();
    while (busy.elapsed() < 300) {
    }
    EXPECT_LT(peakMemory() - before, 2 * APIHTTPClient::maximumBodyBytes);
    EXPECT_TRUE(outcome(std::move(task)).error);
}

} // namespace

} // namespace orvesa
