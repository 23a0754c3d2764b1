# shellcheck shell=bash disable=SC2034
# MATE, as packaging/trial-desktop.sh starts it.
packages=(mate-session-manager mate-panel marco mate-settings-daemon caja mate-themes mate-icon-theme pluma)
variables=(XDG_CURRENT_DESKTOP=MATE XDG_SESSION_DESKTOP=mate DESKTOP_SESSION=mate)
session=(mate-session)
editor=pluma
editorClass=pluma
tray=either
