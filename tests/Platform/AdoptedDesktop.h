#pragma once

// Makes a private desktop the one that this test process itself belongs to, for adapters that run in it.
//
// Main thread. The bus libraries keep one session bus for a process's whole life, so one process adopts one desktop.

#include "desktop/Desktop.h"

namespace orvesa::tests {

class AdoptedDesktop final {
public:
    explicit AdoptedDesktop(const desktop::DesktopOptions &options = {});

    [[nodiscard]] desktop::Desktop &operator*() { return m_desktop; }
    [[nodiscard]] desktop::Desktop *operator->() { return &m_desktop; }

private:
    desktop::Desktop m_desktop;
};

/// The editor with a focused, empty document.
struct Mousepad {
    explicit Mousepad(desktop::Desktop &desktop);

    desktop::Process &process;
    xcb_window_t window;
    desktop::Accessible content;
};

/// An X server and nothing else.
[[nodiscard]] desktop::DesktopOptions screenOnly();
/// The same with a session bus and a window manager.
[[nodiscard]] desktop::DesktopOptions sessionOnly();

} // namespace orvesa::tests
