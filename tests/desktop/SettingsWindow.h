#pragma once

// The product's settings window on a private desktop, as a screen reader reads it and as a user works it.
//
// Main thread. Must not outlive the desktop and the program. Elements are found by what a screen reader says of them.

#include "desktop/TranslateProgram.h"

#include <QRect>
#include <QString>
#include <QStringList>
#include <QTimer>

namespace orvesa::desktop {

class SettingsWindow final {
public:
    SettingsWindow(Desktop &desktop, TranslateProgram &program);

    /// Asks for it as a second start of the program does, and returns once it has the keyboard and knows its place.
    void open();
    /// Closes it as a click on its frame does, and returns once it has gone.
    void close();
    [[nodiscard]] xcb_window_t window() const { return m_window; }
    /// Null while it is hidden.
    [[nodiscard]] Accessible root() const;

    /// A showing element by exact name, and by role and description where they are given. Throws DeadlineError.
    Accessible await(const QString &name, const QString &role = {}, const QString &description = {});
    [[nodiscard]] Accessible find(const QString &name, const QString &role = {}, const QString &description = {}) const;
    /// Until a showing element reads exactly so; until none does.
    void awaitText(const QString &text);
    void awaitNoText(const QString &text);
    [[nodiscard]] bool shows(const QString &text) const { return !find(text).isNull(); }

    /// Clicks its middle with the mouse, after turning the wheel until it is in view. What can be typed into has the
    /// keyboard then.
    void click(const Accessible &element);
    /// Awaits the element and clicks it.
    void click(const QString &name, const QString &role = {}, const QString &description = {});
    /// Clicks the element, which opens a list or a menu, and presses the keys once it is open. Returns when it has
    /// closed.
    void chooseWithKeys(const Accessible &element, const QStringList &keys);
    /// Clicks a section of the sidebar, and returns once its page is there.
    void choose(const QString &section, const QString &subtitle);

    /// The element that has the keyboard.
    [[nodiscard]] Accessible focused() const;
    /// Presses the key until the element has the keyboard. Throws DesktopError when it never gets there.
    void pressUntilFocused(const QString &key, const QString &name, const QString &description = {});

private:
    /// Where the element is, once it has stayed there for a while. Throws DeadlineError.
    [[nodiscard]] QRect awaitStill(const Accessible &element) const;

    Desktop &m_desktop;
    TranslateProgram &m_program;
    QTimer m_look; ///< has waits look again: not every change of a state is told on the accessibility bus
    xcb_window_t m_window = 0;
};

} // namespace orvesa::desktop
