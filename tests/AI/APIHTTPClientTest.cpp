#include "AI/HTTPTest.h"

#include <QCoreApplication>
#include <QNetworkReply>

namespace orvesa {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

class APIHTTPClientTest : public HTTPTest {};

TEST_F(APIHTTPClientTest, postsTheBodyAsJSONWithTheGivenHeaders)
{
    m_service.setScript({Response::json("{\"a\":1}")});
    const auto result = post("{\"b\":2}", {{"X-One", "first"}, {"X-Two", "second"}});
    EXPECT_EQ(result.value, QByteArray("{\"a\":1}"));
    const Request request = m_service.requests().at(0);
    EXPECT_EQ(request.method, "POST");
    EXPECT_EQ(request.target, "/answer");
    EXPECT_EQ(request.body, "{\"b\":2}");
    EXPECT_EQ(request.header("Content-Type"), "application/json");
    EXPECT_EQ(request.header("X-One"), "first");
    EXPECT_EQ(request.header("X-Two"), "second");
}

TEST_F(APIHTTPClientTest, aGivenContentTypeReplacesItsOwn)
{
    m_service.setScript({Response::json("{}")});
    ASSERT_TRUE(post("{}", {{"content-type", "text/csv"}}).value);
    EXPECT_EQ(m_service.requests().at(0).header("Content-Type"), "text/csv");
}

TEST_F(APIHTTPClientTest, getsWithoutABody)
{
    m_service.setScript({Response::json("{}")});
    ASSERT_TRUE(get({{"X-One", "first"}}).value);
    const Request request = m_service.requests().at(0);
    EXPECT_EQ(request.method, "GET");
    EXPECT_EQ(request.header("X-One"), "first");
    EXPECT_EQ(request.body, "");
    EXPECT_FALSE(request.header("Content-Type"));
}

TEST_F(APIHTTPClientTest, keepsBlanksAroundAHeaderValue)
{
    m_service.setScript({Response::json("{}")});
    ASSERT_TRUE(get({{"X-One", " both sides "}}).value);
    EXPECT_EQ(m_service.requests().at(0).header("X-One"), " both sides ");
}

TEST_F(APIHTTPClientTest, aLineBreakInAHeaderValueBeginsNoHeader)
{
    m_service.setScript({Response::json("{}")});
    ASSERT_TRUE(get({{"X-One", "a\r\nX-Evil: b\n"}}).value);
    const Request request = m_service.requests().at(0);
    EXPECT_FALSE(request.header("X-Evil"));
    EXPECT_EQ(request.header("X-One"), "a  X-Evil: b ");
}

TEST_F(APIHTTPClientTest, everyStatusFrom200To299IsASuccess)
{
    for (const int status : {200, 201, 202, 206, 226, 299}) {
        EXPECT_EQ(answered(Response::text(status, "fine")).value, QByteArray("fine")) << status;
    }
    Response none;
    none.status = 204;
    EXPECT_EQ(answered(none).value, QByteArray());
}

TEST_F(APIHTTPClientTest, everyOtherStatusIsAFailureWithItsBody)
{
    for (const int status :
         {300, 304, 305, 399, 400, 401, 403, 404, 405, 407, 409, 410, 418, 429, 499, 500, 501, 503, 599}) {
        if (status == 304) {
            continue; // carries no body; below
        }
        EXPECT_EQ(answered(Response::text(status, "why")).failure(), u"HTTP %1: why"_s.arg(status));
    }
    Response notModified;
    notModified.status = 304;
    EXPECT_EQ(answered(notModified).failure(), u"HTTP 304: "_s);
}

TEST_F(APIHTTPClientTest, status199IsAFailure)
{
    Response response = Response::text(199, "why");
    response.ending = Response::Ending::close;
    EXPECT_TRUE(answered(response).error);
}

TEST_F(APIHTTPClientTest, aRequestForCredentialsIsAnOrdinaryFailure)
{
    Response basic = Response::text(401, "{\"error\":\"bad key\"}");
    basic.headers.emplace_back("WWW-Authenticate", "Basic realm=\"x\"");
    EXPECT_EQ(answered(basic).failure(), u"HTTP 401: {\"error\":\"bad key\"}"_s);
    Response bearer = Response::text(401, "{}");
    bearer.headers.emplace_back("WWW-Authenticate", "Bearer");
    EXPECT_EQ(answered(bearer).failure(), u"HTTP 401: {}"_s);
    EXPECT_EQ(m_service.requests().size(), 2U);
}

TEST_F(APIHTTPClientTest, anErrorBodyIsPassedOnUnchanged)
{
    const QByteArray body = "{ \"error\" : \"slow down\\n\" }\n";
    EXPECT_EQ(answered(Response::text(429, body)).failure(), u"HTTP 429: "_s + QString::fromUtf8(body));
    EXPECT_EQ(answered(Response::text(500, {})).failure(), u"HTTP 500: "_s);
    EXPECT_EQ(answered(Response::text(502, "<html><b>Bad</b> &amp; gateway</html>", "text/html")).failure(),
              u"HTTP 502: <html><b>Bad</b> &amp; gateway</html>"_s);
}

TEST_F(APIHTTPClientTest, anErrorBodyIsCutAfter500Bytes)
{
    EXPECT_EQ(answered(Response::text(500, QByteArray(2000, 'x'))).failure(), u"HTTP 500: "_s + QString(500, u'x'));
    EXPECT_EQ(answered(Response::text(500, QByteArray(500, 'y'))).failure(), u"HTTP 500: "_s + QString(500, u'y'));
    // The cut falls exactly between two characters, then inside one.
    const QByteArray even = QByteArray(498, 'x') + "éé";
    EXPECT_EQ(answered(Response::text(500, even)).failure(), u"HTTP 500: "_s + QString(498, u'x') + u'é');
    const QByteArray odd = QByteArray(499, 'x') + "éé";
    EXPECT_EQ(answered(Response::text(500, odd)).failure(), u"HTTP 500: "_s);
}

TEST_F(APIHTTPClientTest, anErrorBodyThatIsNotUTF8IsLeftOut)
{
    EXPECT_EQ(answered(Response::text(500, "caf\xE9")).failure(), u"HTTP 500: "_s);
    EXPECT_EQ(answered(Response::text(500, "\xED\xA0\x80")).failure(), u"HTTP 500: "_s);
    EXPECT_EQ(answered(Response::text(500, "whole \xE2\x82")).failure(), u"HTTP 500: "_s);
}

TEST_F(APIHTTPClientTest, anEndlessErrorBodyIsNotWaitedFor)
{
    Response endless = Response::text(500, {});
    endless.generatedBytes = qint64{1} << 40;
    EXPECT_EQ(answered(endless).failure(), u"HTTP 500: "_s + QString(500, u'x'));
    EXPECT_TRUE(m_service.waitUntil([this] { return m_service.closedConnections().size() == 1; }));
}

TEST_F(APIHTTPClientTest, readsEveryFraming)
{
    Response response = Response::text(200, "0123456789");
    response.pieceBytes = 3;
    for (const auto framing :
         {Response::Framing::contentLength, Response::Framing::chunked, Response::Framing::untilClose}) {
        response.framing = framing;
        EXPECT_EQ(answered(response).value, QByteArray("0123456789"));
    }
}

TEST_F(APIHTTPClientTest, readsACompressedBody)
{
    for (const auto framing : {Response::Framing::contentLength, Response::Framing::chunked}) {
        Response response = Response::json(QByteArray("{\"answer\":\"").append(100'000, 'z').append("\"}"));
        response.coding = Response::Coding::gzip;
        response.framing = framing;
        EXPECT_EQ(answered(response).value, response.body);
    }
    Response error = Response::text(400, "compressed reason");
    error.coding = Response::Coding::gzip;
    EXPECT_EQ(answered(error).failure(), u"HTTP 400: compressed reason"_s);
}

TEST_F(APIHTTPClientTest, anAddressThatIsNotHTTPIsAnInvalidResponse)
{
    const auto result = outcome(m_client.get(QUrl(u"data:text/plain,hello"_s), {}));
    EXPECT_TRUE(result.hasKind(AppError::Kind::invalidAPIResponse));
}

TEST_F(APIHTTPClientTest, usesAConnectionAgain)
{
    m_service.setResponder([](const Request &) { return Response::json("{}"); });
    for (int count = 0; count < 5; ++count) {
        ASSERT_TRUE(post("{}").value);
    }
    EXPECT_EQ(m_service.requests().size(), 5U);
    EXPECT_EQ(m_service.connectionCount(), 1);
}

TEST_F(APIHTTPClientTest, aRequestUsesTheConnectionOpenedAhead)
{
    m_service.setResponder([](const Request &) { return Response::json("{}"); });
    m_client.preconnect(url());
    ASSERT_TRUE(m_service.waitUntil([this] { return m_service.connectionCount() == 1; }));
    EXPECT_EQ(m_service.requests().size(), 0U);
    ASSERT_TRUE(post("{}").value);
    EXPECT_EQ(m_service.connectionCount(), 1);
    m_client.preconnect(url());
    ASSERT_TRUE(post("{}").value);
    EXPECT_EQ(m_service.connectionCount(), 1);
}

TEST_F(APIHTTPClientTest, leavesNoReplyBehind)
{
    m_service.setScript({Response::json("{}"), Response::text(500, "x"), Response::redirect(302, "/elsewhere"),
                         Response::text(500, QByteArray(2000, 'x'))});
    m_client.preconnect(url());
    EXPECT_TRUE(post("{}").value);
    EXPECT_TRUE(get().error);
    EXPECT_TRUE(get().error);
    const auto hasReply = [this] { return m_manager.findChild<QNetworkReply *>() != nullptr; };
    for (int turn = 0; turn < 20 && hasReply(); ++turn) {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
    }
    EXPECT_FALSE(hasReply());
}

TEST_F(APIHTTPClientTest, keepsNoCookies)
{
    Response first = Response::json("{}");
    first.headers.emplace_back("Set-Cookie", "session=1; Path=/");
    first.headers.emplace_back("Cache-Control", "max-age=3600");
    m_service.setScript({first, Response::json("{}")});
    ASSERT_TRUE(get().value);
    ASSERT_TRUE(get().value);
    EXPECT_EQ(m_service.requests().size(), 2U);
    EXPECT_FALSE(m_service.requests().at(1).header("Cookie"));
}

TEST_F(APIHTTPClientTest, twoRequestsAtOnceDoNotMix)
{
    m_service.setResponder([](const Request &request) {
        Response response = Response::text(200, "for " + request.body);
        response.pieceBytes = 3;
        response.pieceInterval = 2ms;
        return response;
    });
    auto first = m_client.postJSON(url(), {}, "one");
    auto second = m_client.postJSON(url(), {}, "two");
    EXPECT_EQ(outcome(std::move(second)).value, QByteArray("for two"));
    EXPECT_EQ(outcome(std::move(first)).value, QByteArray("for one"));
}

} // namespace

} // namespace orvesa
