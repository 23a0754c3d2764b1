#pragma once

// The folders of one private desktop, all inside one temporary folder, and the configuration files that its parts read
// there.
//
// A value. The folder is made by the constructor and removed by the desktop's guard.

#include <QString>

namespace orvesa::desktop {

class DesktopFolders final {
public:
    DesktopFolders();

    [[nodiscard]] const QString &top() const { return m_top; }
    [[nodiscard]] QString home() const;
    [[nodiscard]] QString runtime() const;       ///< XDG_RUNTIME_DIR, mode 0700
    [[nodiscard]] QString configuration() const; ///< XDG_CONFIG_HOME
    [[nodiscard]] QString data() const;          ///< XDG_DATA_HOME
    [[nodiscard]] QString cache() const;         ///< XDG_CACHE_HOME
    [[nodiscard]] QString state() const;         ///< XDG_STATE_HOME
    [[nodiscard]] QString temporary() const;     ///< TMPDIR

    /// Writes a file below the top folder, with the folders to it, and gives its path. Throws DesktopError.
    QString write(const QString &relativePath, const QByteArray &content) const;
    /// The session bus' configuration: a bus that listens in the runtime folder and activates the desktop's own
    /// services only.
    QString writeBusConfiguration() const;
    /// A panel with nothing but the tray.
    void writePanelConfiguration() const;

private:
    QString m_top;
};

} // namespace orvesa::desktop
