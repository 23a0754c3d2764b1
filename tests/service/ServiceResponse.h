#pragma once

// One answer of the loopback service: what is sent, how fast, and how the connection ends. Value type, any thread.

#include "service/ServiceRequest.h"

#include <QByteArray>

#include <chrono>
#include <optional>
#include <vector>

namespace orvesa::service {

struct ServiceResponse {
    enum class Framing { contentLength, chunked, untilClose };
    enum class Ending { keepAlive, close, reset };
    enum class Coding { identity, gzip };
    enum class Answering { normally, never };

    int status = 200;
    std::vector<Header> headers;
    QByteArray body;
    qint64 generatedBytes = 0; ///< that many bytes made on the fly follow `body`; not together with gzip

    Framing framing = Framing::contentLength;
    Coding coding = Coding::identity;
    Ending ending = Ending::keepAlive;
    Answering answering = Answering::normally;
    /// Sent in place of status line and headers when not empty.
    QByteArray rawHead;
    /// Replaces the true number in the Content-Length header.
    std::optional<qint64> announcedLength;

    std::chrono::milliseconds delay{0};         ///< before the first byte
    qsizetype pieceBytes = 0;                   ///< the body goes out in pieces of this size; 0: as fast as possible
    std::chrono::milliseconds pieceInterval{0}; ///< between pieces

    /// The connection ends as `ending` says (close when it says keepAlive) once this many bytes are out. Of the whole
    /// answer, or of the body as framed.
    std::optional<qint64> cutAfterBytes;
    std::optional<qint64> cutAfterBodyBytes;

    [[nodiscard]] static ServiceResponse json(QByteArray body);
    [[nodiscard]] static ServiceResponse text(int status, QByteArray body, QByteArray contentType = "text/plain");
    [[nodiscard]] static ServiceResponse redirect(int status, QByteArray location);
    /// Takes the request and stays silent; the connection stays open.
    [[nodiscard]] static ServiceResponse silence();

    /// The body's bytes before framing, compressed when the coding says so.
    [[nodiscard]] QByteArray codedBody() const;
    /// Status line and headers for a body of that many bytes, with the blank line.
    [[nodiscard]] QByteArray head(qint64 bodyBytes) const;
};

/// The bytes as one gzip member.
[[nodiscard]] QByteArray gzipped(const QByteArray &bytes);

} // namespace orvesa::service
