#pragma once

// What the tests of shortcuts over other applications share: the utility runs, an application is in front with text
// selected, and the keys are pressed by their places.
//
// Main thread.

#include "desktop/ProgramFixture.h"

namespace orvesa::desktop {

class ShortcutFixture : public ProgramFixture {
protected:
    void SetUp() override;

    /// Starts the application and waits until its window is the active one: `front`.
    Process &open(const QString &name, const QStringList &arguments, const QString &windowClass,
                  std::chrono::milliseconds deadline = usualDeadline);
    /// Each of the three shortcuts starts its own action, with each state of the lock keys on each layout, and leaves
    /// `front` active and no key down. What is selected in it stays selected.
    void expectAllShortcuts();
    /// Presses the shortcut again and again, and types a letter after each press: `read` has to give all of them.
    void expectTypingToGoOn(int presses, const std::function<QString()> &read);
    /// The key at that place with Alt held, as quick fingers do it.
    void pressWithAlt(xcb_keycode_t place);

    xcb_window_t front = 0;

private:
    void expectRequest(xcb_keycode_t place, const QString &part, const std::string &where);
    void expectScreenCapture(const std::string &where);
};

} // namespace orvesa::desktop
