#pragma once

// One HTTP request of the program, and where a redirect leads it. Value type and pure functions, any thread.

#include <QByteArray>
#include <QUrl>

#include <optional>
#include <utility>
#include <vector>

namespace orvesa {

struct HTTPRequest {
    using Headers = std::vector<std::pair<QByteArray, QByteArray>>;

    QUrl url;
    Headers headers;                ///< meant for this origin alone: one of them is the key
    std::optional<QByteArray> body; ///< a POST of JSON when there is one, otherwise a GET
};

/// Redirects in a row after which a request is given up.
inline constexpr int greatestRedirectCount = 16;

/// Whether the status asks for the request to be made elsewhere.
[[nodiscard]] bool isRedirect(int status);

/// The request that follows `request` after it was answered with a redirect to `location`, or nothing when that must
/// not be followed: no usable address, not HTTP, or unencrypted where it was encrypted or where it leaves this machine.
/// A request that leaves its origin loses its headers for good.
[[nodiscard]] std::optional<HTTPRequest> redirectedRequest(const HTTPRequest &request, int status,
                                                           const QByteArray &location);

} // namespace orvesa
