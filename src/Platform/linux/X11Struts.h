#pragma once

// What docks and task bars keep for themselves at the edges of the desktop, monitor by monitor.
//
// The window manager's work area is one rectangle for the whole desktop, useless with several monitors; the docks' own
// struts say it exactly. Main thread. Rectangles are native pixels with the origin at the root window's top left.

#include "Platform/linux/X11Connection.h"

#include <QRect>

#include <vector>

namespace orvesa::X11Struts {

/// Distance from an edge of the root window, over a part of that edge.
struct Strut {
    enum class Edge { left, right, top, bottom };

    Edge edge;
    int width;
    int start;
    int end; ///< last pixel

    bool operator==(const Strut &) const = default;
};

/// The struts of all windows that the window manager knows. Two round trips to the X server; none without windows.
[[nodiscard]] std::vector<Strut> read(X11Connection &connection);

/// The part of the monitor that they leave free. A strut that covers the whole monitor belongs to another one behind
/// it.
[[nodiscard]] QRect freePart(const QRect &monitor, const QRect &root, const std::vector<Strut> &struts);

} // namespace orvesa::X11Struts
