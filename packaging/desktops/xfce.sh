# shellcheck shell=bash disable=SC2034
# Xfce, as packaging/trial-desktop.sh starts it.
packages=(xfce4-session xfwm4 xfce4-panel xfdesktop4 xfce4-settings xfconf thunar mousepad)
variables=(XDG_CURRENT_DESKTOP=XFCE DESKTOP_SESSION=xfce)
session=(xfce4-session)
editor="mousepad --disable-server"
editorClass=mousepad
tray=notifier
