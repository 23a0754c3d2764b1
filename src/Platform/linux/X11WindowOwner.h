#pragma once

// Whose windows are whose. Pure questions to the server; main thread.

#include "Platform/linux/X11Connection.h"

#include <QByteArray>

#include <optional>

namespace orvesa::X11WindowOwner {

/// The process at the other end of the window's connection, or, where the server cannot tell, the one that the window
/// names.
[[nodiscard]] std::optional<qint64> process(X11Connection &connection, xcb_window_t window);

/// A window that belongs to a program, and what the program calls itself.
struct Program {
    xcb_window_t window = XCB_WINDOW_NONE;
    QByteArray instanceName;
    QByteArray className;
};

/// The program that the window, or one that it is part of, is named after.
[[nodiscard]] std::optional<Program> program(X11Connection &connection, xcb_window_t window);

/// The deepest window under the pointer.
[[nodiscard]] xcb_window_t underPointer(X11Connection &connection);

/// The program whose window gets what is typed now; nothing when no window does.
[[nodiscard]] std::optional<Program> withKeyboard(X11Connection &connection);

} // namespace orvesa::X11WindowOwner
