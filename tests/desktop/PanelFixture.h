#pragma once

// What the tests of using the panel share: an editor with a selection, an answer in the panel, and its controls.
//
// Main thread. A test calls showAnswer() first of all.

#include "desktop/ProgramFixture.h"

namespace orvesa::desktop {

class PanelFixture : public ProgramFixture {
protected:
    /// The desktop, the utility, the editor with the text selected, and the panel with the answer.
    void showAnswer(const DesktopOptions &options, const QString &selected = QStringLiteral("La casa es grande."));
    /// Selects the editor's text again and presses the shortcut.
    void showAgain();

    [[nodiscard]] bool isShown() const { return desktop->windows().isMapped(panel); }
    [[nodiscard]] QRect frame() const { return desktop->windows().geometry(panel); }
    /// A control of the panel by its name; fails the test when there is none.
    [[nodiscard]] Accessible control(const QString &name) const;
    [[nodiscard]] QPoint middleOf(const QString &name) const { return control(name).extents().center(); }
    /// A place in the header that is neither text nor a control.
    [[nodiscard]] QPoint inHeader() const { return frame().topLeft() + QPoint(150, 6); }
    /// Gives what must not happen time to happen.
    [[nodiscard]] bool staysShown() const;
    void awaitHidden() const;
    /// The control of the panel that has the keyboard; empty for none.
    [[nodiscard]] QString focusedControl() const;

    xcb_window_t panel = 0;
};

} // namespace orvesa::desktop
