#pragma once

// The demonstration: a real editor on a private desktop, text selected in it, the real shortcut pressed, and the answer
// read from the panel. Prints each step with the time since its start.
//
// Main thread; throws DesktopError when a step fails.

#include <QElapsedTimer>
#include <QString>

#include <functional>

namespace orvesa::desktop {

class Desktop;
class TextEditor;
class TranslateProgram;

class Demonstration final {
public:
    Demonstration(QString program, QString screenshot);

    void run();

private:
    void show(Desktop &desktop);
    void pressTheShortcut(Desktop &desktop, TextEditor &editor, TranslateProgram &program);
    void checkNothingWasDisturbed(Desktop &desktop, const TextEditor &editor) const;
    void say(const QString &step) const;

    QString m_program;
    QString m_screenshot;
    QElapsedTimer m_clock;
};

} // namespace orvesa::desktop
