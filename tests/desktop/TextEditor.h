#pragma once

// A real text editor (mousepad) on a private desktop, with one document.
//
// Main thread. Must not outlive its Desktop.

#include "desktop/Desktop.h"

#include <QString>

namespace orvesa::desktop {

class TextEditor final {
public:
    /// Opens it with the text, and returns once it is the active window and its text area has the focus.
    explicit TextEditor(Desktop &desktop, const QString &text = {});

    [[nodiscard]] Process &process() const { return m_process; }
    [[nodiscard]] xcb_window_t window() const { return m_window; }
    [[nodiscard]] const Accessible &content() const { return m_content; }

    /// Selects everything with the keyboard, and waits until the selection is PRIMARY.
    void selectAll();
    /// Types the text in place of the whole document, and selects it.
    void replaceText(const QString &text);
    /// Clicks an entry of its menus; false when there is none.
    bool choose(const QString &menuEntry);
    /// The middle of its window's client area.
    [[nodiscard]] QPoint middle() const;
    /// Whether it is the active window, has the keyboard, and knows so.
    [[nodiscard]] bool isInUse() const;

private:
    Desktop &m_desktop;
    Process &m_process;
    xcb_window_t m_window;
    Accessible m_content;
};

} // namespace orvesa::desktop
