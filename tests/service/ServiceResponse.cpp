#include "service/ServiceResponse.h"

#include <zlib.h>

#include <QtGlobal>

#include <utility>

namespace orvesa::service {

namespace {

[[nodiscard]] QByteArray reasonPhrase(int status)
{
    switch (status) {
    case 200:
        return "OK";
    case 302:
        return "Found";
    case 400:
        return "Bad Request";
    case 401:
        return "Unauthorized";
    case 404:
        return "Not Found";
    case 429:
        return "Too Many Requests";
    case 500:
        return "Internal Server Error";
    default:
        return "Scripted";
    }
}

} // namespace

ServiceResponse ServiceResponse::json(QByteArray body)
{
    return text(200, std::move(body), "application/json");
}

ServiceResponse ServiceResponse::text(int status, QByteArray body, QByteArray contentType)
{
    ServiceResponse response;
    response.status = status;
    response.headers.emplace_back("Content-Type", std::move(contentType));
    response.body = std::move(body);
    return response;
}

ServiceResponse ServiceResponse::redirect(int status, QByteArray location)
{
    ServiceResponse response = text(status, "moved");
    response.headers.emplace_back("Location", std::move(location));
    return response;
}

ServiceResponse ServiceResponse::silence()
{
    ServiceResponse response;
    response.answering = Answering::never;
    return response;
}

QByteArray ServiceResponse::codedBody() const
{
    return coding == Coding::gzip ? gzipped(body) : body;
}

QByteArray ServiceResponse::head(qint64 bodyBytes) const
{
    if (!rawHead.isEmpty()) {
        return rawHead;
    }
    QByteArray head = "HTTP/1.1 " + QByteArray::number(status) + ' ' + reasonPhrase(status) + "\r\n";
    for (const auto &[name, value] : headers) {
        head += name + ": " + value + "\r\n";
    }
    if (coding == Coding::gzip) {
        head += "Content-Encoding: gzip\r\n";
    }
    switch (framing) {
    case Framing::contentLength:
        head += "Content-Length: " + QByteArray::number(announcedLength.value_or(bodyBytes)) + "\r\n";
        break;
    case Framing::chunked:
        head += "Transfer-Encoding: chunked\r\n";
        break;
    case Framing::untilClose:
        head += "Connection: close\r\n";
        break;
    }
    return head + "\r\n";
}

QByteArray gzipped(const QByteArray &bytes)
{
    z_stream stream{};
    constexpr int gzipWindowBits = 15 + 16;
    constexpr int memoryLevel = 8;
    if (deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, gzipWindowBits, memoryLevel, Z_DEFAULT_STRATEGY) !=
        Z_OK) {
        qFatal("The compressor did not start.");
    }
    QByteArray input = bytes;
    QByteArray output(static_cast<qsizetype>(deflateBound(&stream, static_cast<uLong>(bytes.size()))),
                      Qt::Uninitialized);
    stream.next_in = reinterpret_cast<Bytef *>(input.data());
    stream.avail_in = static_cast<uInt>(input.size());
    stream.next_out = reinterpret_cast<Bytef *>(output.data());
    stream.avail_out = static_cast<uInt>(output.size());
    if (deflate(&stream, Z_FINISH) != Z_STREAM_END) {
        qFatal("The compressor did not finish.");
    }
    output.truncate(static_cast<qsizetype>(stream.total_out));
    deflateEnd(&stream);
    return output;
}

} // namespace orvesa::service
