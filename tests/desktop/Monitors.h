#pragma once

// Monitors that are plugged in, arranged and unplugged, on a desktop whose server is Server::monitors.
//
// Main thread; the desktop must outlive it. Coordinates are the X server's, which has no negative ones: the first
// monitor, which is the primary one, stands right of and below others by having an offset.

#include "desktop/Desktop.h"

#include <QRect>

#include <vector>

namespace orvesa::desktop {

class Monitors final {
public:
    explicit Monitors(Desktop &desktop) : m_desktop(desktop) {}

    /// Plugs these in, the primary one first, and unplugs all others. Throws DesktopError.
    void arrange(const std::vector<QRect> &monitors);

    /// The name by which programs know a monitor.
    [[nodiscard]] static QString name(std::size_t index);
    /// What the server is to be started with. Writes its configuration into the desktop's folders.
    [[nodiscard]] static QStringList serverArguments(const DesktopFolders &folders);

private:
    void randr(const QStringList &arguments);

    Desktop &m_desktop;
    QList<QSize> m_modes;                             ///< that the server knows
    std::vector<QList<QSize>> m_modesOfMonitors = {}; ///< that each monitor knows
};

} // namespace orvesa::desktop
