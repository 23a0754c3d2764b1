# shellcheck shell=bash disable=SC2034
# KDE Plasma, as packaging/trial-desktop.sh starts it.
packages=(plasma-desktop plasma-workspace kwin-x11 breeze kwrite)
variables=(XDG_CURRENT_DESKTOP=KDE XDG_SESSION_DESKTOP=KDE DESKTOP_SESSION=plasma)
session=(startplasma-x11)
editor=kwrite
editorClass=kwrite
tray=notifier
splash=ksplash
