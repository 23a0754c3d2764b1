#pragma once

// Text as real applications show it: each scene is one application with a known text in it.
//
// Main thread; the desktop outlives it. Pages and editors are found on the screen by their background.

#include "desktop/Desktop.h"

#include <QColor>
#include <QRect>
#include <QString>
#include <QStringList>

#include <vector>

namespace orvesa::desktop {

struct Scene {
    enum class Application { mousepad, featherpad, xterm, terminal, chromium, firefox, evince };

    QString id;
    QString language; ///< as in the benchmark's cases: en, ja, zh, mixja, mixzh
    QString kind;
    Application application = Application::mousepad;
    QColor background;
    QColor ink;
    QString style; ///< of pages: CSS; of terminals: the font
    QStringList lines;
};

class ReadingMatter final {
public:
    explicit ReadingMatter(Desktop &desktop) : m_desktop(desktop) {}

    [[nodiscard]] static std::vector<Scene> scenes();
    [[nodiscard]] static Scene scene(const QString &id);

    /// Starts the application; where its text is, once that is on the screen and stays as it is.
    QRect show(const Scene &scene);
    /// Ends the application of the last scene.
    void close();

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
    Process *m_process = nullptr;
    xcb_window_t m_window = 0;
    int m_count = 0;
};

} // namespace orvesa::desktop
