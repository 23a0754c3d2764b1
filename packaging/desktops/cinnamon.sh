# shellcheck shell=bash disable=SC2034
# Cinnamon, as packaging/trial-desktop.sh starts it.
packages=(cinnamon gedit)
variables=(XDG_CURRENT_DESKTOP=X-Cinnamon XDG_SESSION_DESKTOP=cinnamon DESKTOP_SESSION=cinnamon
    QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1)
session=(cinnamon-session --session cinnamon)
editor="gedit --standalone"
editorClass=gedit
tray=embedding
# Its settings daemon switches accessibility off at every login. By the variable above the program comes to the
# accessibility bus all the same, so that what it shows can be read.
asks=yes
