#pragma once

// Text as real applications show it.
//
// Main thread; the desktop outlives it. Pages and editors are found on the screen by their background.

#include "desktop/Desktop.h"
#include "desktop/apps/Scene.h"

#include <QRect>
#include <QString>
#include <QStringList>

namespace orvesa::desktop {

class ReadingMatter final {
public:
    explicit ReadingMatter(Desktop &desktop) : m_desktop(desktop) {}

    /// Starts the application; where its text is, once that is on the screen and stays as it is.
    QRect show(const Scene &scene);

private:
    struct Command {
        QString program;
        QStringList arguments;
        QString windowClass;
    };
    [[nodiscard]] Command commandFor(const Scene &scene) const;
    [[nodiscard]] QString writeScript(const Scene &scene) const;
    [[nodiscard]] QString writePage(const Scene &scene) const;
    [[nodiscard]] QString writeDocument(const Scene &scene) const;
    [[nodiscard]] QRect textArea(const Scene &scene, xcb_window_t window) const;

    Desktop &m_desktop;
    int m_count = 0;
};

} // namespace orvesa::desktop
