#pragma once

// Whether a program still takes what its window is sent. Main thread.

#include "Platform/linux/X11Connection.h"

namespace orvesa::X11Ping {

/// Asks the window's program to say that it is there, as window managers do, and waits at most 250 ms. True also where
/// the program does not know the question. The connection must be one on which nobody else listens to the root window's
/// core events.
[[nodiscard]] bool answers(X11Connection &connection, xcb_window_t window);

} // namespace orvesa::X11Ping
