#pragma once

// A request in Qt's terms, with everything switched off that the program does not want: cookies, cache, remembered
// credentials, redirects that carry headers along. Pure function, any thread.

#include "AI/HTTPRequest.h"

#include <QNetworkRequest>

namespace orvesa {

[[nodiscard]] QNetworkRequest networkRequest(const HTTPRequest &request);

} // namespace orvesa
