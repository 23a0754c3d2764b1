# shellcheck shell=bash disable=SC2034,SC2016
# i3 with its bar, as packaging/trial-desktop.sh starts it. Its configuration is the one that it offers a new user, with
# the Windows key as its own modifier.
packages=(i3-wm i3status dmenu dex mousepad)
variables=(XDG_CURRENT_DESKTOP=i3 DESKTOP_SESSION=i3)
session=(i3)
editor="mousepad --disable-server"
editorClass=mousepad
tray=embedding

prepareHome() {
    mkdir -p ~/.config/i3
    sed 's/^set $mod Mod1$/set $mod Mod4/; s/Mod1/Mod4/g' /etc/i3/config | grep -v i3-config-wizard >~/.config/i3/config
}
