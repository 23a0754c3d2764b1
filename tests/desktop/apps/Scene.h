#pragma once

// One application with a known text in it. Values and constant data; any thread.

#include <QColor>
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

[[nodiscard]] std::vector<Scene> scenes();
/// The scene of that name; throws DesktopError when there is none.
[[nodiscard]] Scene sceneNamed(const QString &id);

} // namespace orvesa::desktop
