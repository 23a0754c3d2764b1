#pragma once

// The keys of the main menu, in a window of a desktop on which programs like this one show no menu bar.
//
// Control with the letter, and whatever the desktop itself uses for the same. The keys for editing need nothing: the
// controls have them. On a desktop with a menu bar for all programs that menu comes first, and does the same. Main
// thread.

#include <functional>

class QWidget;

namespace orvesa::WindowKeys {

/// The key for closing a window calls `close`; the one for quitting ends the program.
void add(QWidget &window, std::function<void()> close);

} // namespace orvesa::WindowKeys
