#include "desktop/DesktopEnvironment.h"

namespace orvesa::desktop {

using namespace Qt::StringLiterals;

QProcessEnvironment cleanEnvironment(const DesktopFolders &folders, const DesktopOptions &options)
{
    const QProcessEnvironment own = QProcessEnvironment::systemEnvironment();
    QProcessEnvironment environment;
    for (const QString &name : {u"USER"_s, u"LOGNAME"_s, u"ASAN_OPTIONS"_s, u"UBSAN_OPTIONS"_s, u"LSAN_OPTIONS"_s})
        if (own.contains(name))
            environment.insert(name, own.value(name));
    environment.insert(u"PATH"_s, u"/usr/local/bin:/usr/bin:/bin:/usr/local/sbin:/usr/sbin:/sbin:/usr/games"_s);
    environment.insert(u"SHELL"_s, u"/bin/sh"_s);
    environment.insert(u"LANG"_s, options.language);
    environment.insert(u"HOME"_s, folders.home());
    environment.insert(u"TMPDIR"_s, folders.temporary());
    environment.insert(u"XDG_RUNTIME_DIR"_s, folders.runtime());
    environment.insert(u"XDG_CONFIG_HOME"_s, folders.configuration());
    environment.insert(u"XDG_DATA_HOME"_s, folders.data());
    environment.insert(u"XDG_CACHE_HOME"_s, folders.cache());
    environment.insert(u"XDG_STATE_HOME"_s, folders.state());
    environment.insert(u"XDG_SESSION_TYPE"_s, u"x11"_s);
    environment.insert(u"GDK_BACKEND"_s, u"x11"_s);
    environment.insert(u"QT_QPA_PLATFORM"_s, u"xcb"_s);
    environment.insert(u"LIBGL_ALWAYS_SOFTWARE"_s, u"1"_s);
    environment.insert(u"GSETTINGS_BACKEND"_s, u"memory"_s);
    environment.insert(u"GIO_USE_VFS"_s, u"local"_s);
    environment.insert(u"GTK_USE_PORTAL"_s, u"0"_s);
    // An address that leads nowhere, so that no program goes looking for a bus of its own.
    environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, u"unix:path=%1/no-bus"_s.arg(folders.top()));
    for (const auto &[name, value] : options.environment.asKeyValueRange())
        environment.insert(name, value);
    return environment;
}

} // namespace orvesa::desktop
