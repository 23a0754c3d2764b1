# shellcheck shell=bash disable=SC2034
# GNOME with its extension for tray icons, as packaging/trial-desktop.sh starts it.
packages=(gnome-session gnome-shell gnome-settings-daemon gnome-shell-extension-appindicator gnome-text-editor dconf-cli)
variables=(XDG_CURRENT_DESKTOP=GNOME XDG_SESSION_DESKTOP=gnome DESKTOP_SESSION=gnome-xorg)
session=(gnome-session --builtin --session=trial)
editor="gnome-text-editor --standalone"
editorClass=gnome-text-editor
tray=notifier
dismiss=Escape

# GNOME's shell and what gives windows their look. The other daemons want systemd's manager of logins, without which
# GNOME gives up at once; the shell goes without where there is none, and gives up where one cannot be started.
prepareRoot() {
    rm -f /usr/share/dbus-1/system-services/org.freedesktop.login1.service
    printf '[GNOME Session]\nName=Trial\nRequiredComponents=org.gnome.Shell;org.gnome.SettingsDaemon.XSettings;\n' \
        >/usr/share/gnome-session/sessions/trial.session
}

# As the extension's page in GNOME's own settings switches it on; and no tour of a new version.
prepareHome() {
    gsettings set org.gnome.shell enabled-extensions "['ubuntu-appindicators@ubuntu.com']"
    gsettings set org.gnome.shell welcome-dialog-last-shown-version 999
}
