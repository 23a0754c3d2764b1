#pragma once

// The system's own words, in the user's language, for a transfer that failed. Any thread.

#include <QNetworkReply>
#include <QString>

namespace orvesa::CFNetworkWording {

/// Empty when the system has no words for the error.
[[nodiscard]] QString text(QNetworkReply::NetworkError error);

} // namespace orvesa::CFNetworkWording
