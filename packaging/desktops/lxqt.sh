# shellcheck shell=bash disable=SC2034
# LXQt with Openbox, as packaging/trial-desktop.sh starts it.
packages=(lxqt-session lxqt-panel lxqt-config lxqt-themes lxqt-qtplugin lxqt-globalkeys lxqt-notificationd lxqt-runner
    lxqt-policykit pcmanfm-qt openbox featherpad oxygen-icon-theme)
variables=(XDG_CURRENT_DESKTOP=LXQt XDG_SESSION_DESKTOP=LXQt DESKTOP_SESSION=lxqt)
session=(startlxqt)
editor="featherpad --standalone"
editorClass=featherpad
tray=notifier
