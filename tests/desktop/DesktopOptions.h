#pragma once

// What a private desktop consists of. A value; the defaults are a complete desktop.

#include <QMap>
#include <QSize>
#include <QString>
#include <QStringList>

namespace orvesa::desktop {

enum class Server {
    framebuffer, ///< Xvfb: one screen
    monitors,    ///< Xorg without hardware: class Monitors plugs them in
};
enum class WindowManager { none, openbox, xfwm4 };
enum class SessionBus { none, present };
enum class Accessibility {
    none,     ///< no accessibility bus runs
    disabled, ///< it runs, org.a11y.Status.IsEnabled is false
    enabled,  ///< it runs, IsEnabled is true
};
/// Whether an assistive technology listens, as a screen reader does. While one does, applications tell of everything that
/// changes in them, which takes their time.
enum class Listening { none, present };
enum class KeyStore {
    absent,   ///< nothing owns or can be activated as org.freedesktop.secrets
    unlocked, ///< a running store with an unlocked default collection
    locked,   ///< a running store whose default collection exists and is locked
};
enum class Tray {
    none,
    embedding,      ///< tint2: XEmbed icons only
    statusNotifier, ///< xfce4-panel: StatusNotifierItem
};

struct DesktopOptions {
    Server server = Server::framebuffer;
    QSize screenSize{1280, 900}; ///< of the framebuffer
    /// Scale of the desktop as applications learn it: Xft.dpi in the server's resources. (QT_SCALE_FACTOR would
    /// multiply it; give that in `environment`, or to one program, where it is wanted.)
    double scale = 1.0;
    WindowManager windowManager = WindowManager::openbox;
    SessionBus sessionBus =
        SessionBus::present; ///< without it there is no accessibility bus, key store or StatusNotifier tray
    Accessibility accessibility = Accessibility::enabled;
    Listening listening = Listening::present; ///< without it, waiting for something in accessibles() takes longer
    KeyStore keyStore = KeyStore::unlocked;
    Tray tray = Tray::none;
    QString language = QStringLiteral("C.UTF-8"); ///< LANG
    QMap<QString, QString> environment;           ///< further variables for everything on the desktop
    QStringList serverArguments;                  ///< further arguments of the X server
};

} // namespace orvesa::desktop
