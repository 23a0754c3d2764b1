#pragma once

// Where the desktop's monitors are and how dense they are. Main thread.

#include <QByteArray>
#include <QRect>

#include <vector>

#include <xcb/xcb.h>

namespace orvesa {

/// In device pixels of the whole screen; the whole screen where the server knows no monitors.
[[nodiscard]] std::vector<QRect> monitorsOf(xcb_connection_t *connection, const xcb_screen_t &screen);

/// Device pixels in a point, as the desktop tells its applications.
[[nodiscard]] double scaleOf(xcb_connection_t *connection, const xcb_screen_t &screen);

/// The same from the text of the server's resources; 1 where they do not say.
[[nodiscard]] double scaleInResources(const QByteArray &resources);

} // namespace orvesa
