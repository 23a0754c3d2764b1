#pragma once

// What of an error's body a message shows. Pure function, any thread.

#include <QByteArray>
#include <QString>

namespace orvesa {

/// The first APIHTTPClient::maximumErrorBytes bytes as text, or nothing when these are not valid UTF-8 from the first
/// to the last; a character that the cut splits is not.
[[nodiscard]] QString errorText(const QByteArray &body);

} // namespace orvesa
