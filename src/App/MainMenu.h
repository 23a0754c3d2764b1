#pragma once

// The main menu of desktops that have one bar for all programs: its keys reach the control that has the keyboard.
//
// Main thread, inside a QApplication. Elsewhere it is never shown and its keys do nothing.

#include <QKeySequence>
#include <QMenuBar>

namespace orvesa {

class MainMenu final {
public:
    MainMenu();

    [[nodiscard]] QMenuBar &bar() { return m_bar; }

private:
    /// `slot` is called on the control that has the keyboard, if it has one of that name.
    static void addEditing(QMenu &menu, const QString &title, const char *slot, const QKeySequence &key);

    QMenuBar m_bar{nullptr};
};

} // namespace orvesa
