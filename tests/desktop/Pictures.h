#pragma once

// The pictures of the documentation, taken of the real program on a private desktop: in each language of the interface
// the panel over an editor, and two pages of the settings window.
//
// Main thread; throws DesktopError when something is not as it should be. The answers are scripted, and no picture
// shows anything of whoever runs this.

#include "Core/AppLanguage.h"
#include "Core/L10nKey.h"
#include "desktop/Desktop.h"

#include <QDir>
#include <QString>

namespace orvesa::desktop {

class TranslateProgram;

class Pictures final {
public:
    /// The program to show, and the folder that the pictures go to: panel-en.png, providers-ja.png and so on.
    Pictures(QString program, const QString &folder);

    void take(AppLanguage language);

private:
    void takePanel(Desktop &desktop, TranslateProgram &program, AppLanguage language);
    void takePage(Desktop &desktop, TranslateProgram &program, L10nKey section, const QString &name);
    [[nodiscard]] Accessible awaitShowing(Desktop &desktop, TranslateProgram &program, const QString &text) const;
    /// Until two looks at the window show the same.
    void awaitStill(Desktop &desktop, xcb_window_t window) const;
    [[nodiscard]] QString path(const QString &name, AppLanguage language) const;

    QString m_program;
    QDir m_folder;
};

} // namespace orvesa::desktop
