#pragma once

// What a message shows of an error. Pure functions, any thread.

#include <QByteArray>
#include <QString>
#include <QUrl>

namespace orvesa {

/// The first APIHTTPClient::maximumErrorBytes bytes as text, or nothing when these are not valid UTF-8 from the first
/// to the last; a character that the cut splits is not.
[[nodiscard]] QString errorText(const QByteArray &body);

/// The platform's words for a failed transfer, in one line and without the query of its address, which may be private.
[[nodiscard]] QString transferErrorText(const QString &platformText, const QUrl &url);

} // namespace orvesa
