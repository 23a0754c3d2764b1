#pragma once

// What the loopback service records about the traffic it sees. Value types, any thread.

#include <QByteArray>
#include <QByteArrayView>

#include <optional>
#include <utility>
#include <vector>

namespace orvesa::service {

using Header = std::pair<QByteArray, QByteArray>;

/// Nanoseconds of the system's monotonic clock, comparable between processes of one machine.
[[nodiscard]] qint64 monotonicNanoseconds();

struct ServiceRequest {
    QByteArray method;
    QByteArray target; ///< as sent: path and query
    std::vector<Header>
        headers; ///< in the order sent; values without the one blank after the colon, otherwise untouched
    QByteArray body;
    int connection = 0;              ///< counted from 1 in order of acceptance
    qint64 firstByteNanoseconds = 0; ///< when the first byte of the request was received
    qint64 completeNanoseconds = 0;  ///< when its last byte was

    /// The first header with this name, compared without regard to case.
    [[nodiscard]] std::optional<QByteArray> header(QByteArrayView name) const;
    /// The target without its query.
    [[nodiscard]] QByteArray path() const;
};

struct ClosedConnection {
    enum class Side { peer, service };

    int connection = 0;
    Side closedBy = Side::peer;
    qint64 nanoseconds = 0;
};

} // namespace orvesa::service
