#pragma once

// What a message shows of an error. Pure functions but for the desktop's own words; any thread.

#include <QByteArray>
#include <QNetworkReply>
#include <QString>
#include <QUrl>

#include <functional>

namespace orvesa {

/// The first APIHTTPClient::maximumErrorBytes bytes as text, or nothing when these are not valid UTF-8 from the first
/// to the last; a character that the cut splits is not.
[[nodiscard]] QString errorText(const QByteArray &body);

/// Words for a transfer that ended with the error; empty to leave them to Qt.
using TransferWording = std::function<QString(QNetworkReply::NetworkError error)>;

/// Takes the words from the desktop itself, where it has some. To be set before the first transfer, on the main thread.
void setTransferWording(TransferWording wording);

/// What the desktop says of the error, or else what Qt does.
[[nodiscard]] QString platformErrorText(QNetworkReply::NetworkError error, const QString &qtText);

/// The platform's words for a failed transfer, in one line and without the query of its address, which may be private.
[[nodiscard]] QString transferErrorText(const QString &platformText, const QUrl &url);

} // namespace orvesa
