#pragma once

// Whether an address stays on this machine; only there may the program speak without encryption. Pure, any thread.

#include <QUrl>

namespace orvesa {

/// True for "localhost", 127.0.0.0/8 and ::1.
[[nodiscard]] bool hasLoopbackHost(const QUrl &url);

} // namespace orvesa
