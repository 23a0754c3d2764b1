# shellcheck shell=bash disable=SC2034,SC2016,SC2154,SC2317
# KDE Plasma's Wayland session, as packaging/trial-desktop.sh starts it: KWin without a monitor, its X server, and Plasma's
# portal. Nothing can press a key there, so KWin's own list of shortcuts is told to run one that the portal has bound.
packages=(kwin-wayland xwayland libkf5globalaccel-bin libgl1-mesa-dri plasma-workspace plasma-desktop xdg-desktop-portal
    xdg-desktop-portal-kde qt6-wayland libcap2-bin)
variables=(XDG_CURRENT_DESKTOP=KDE XDG_SESSION_DESKTOP=KDE XDG_SESSION_TYPE=wayland)
session=(startCompositor)

# It may ask for a higher priority than the root may give.
prepareRoot() {
    setcap -r /usr/bin/kwin_wayland
}

# The compositor comes with the session, and is the display.
startDisplay() {
    unset DISPLAY
}

startCompositor() {
    kwin_wayland --virtual --width 1280 --height 900 --xwayland --no-lockscreen "$XDG_RUNTIME_DIR/inside"
}

prepareHome() {
    printf '#!/bin/sh\necho "$DISPLAY $WAYLAND_DISPLAY" >"$XDG_RUNTIME_DIR/display"\n' >"$XDG_RUNTIME_DIR/inside"
    chmod +x "$XDG_RUNTIME_DIR/inside"
}

runShortcut() {
    gdbus call --session --dest org.kde.kglobalaccel --object-path /component/Orvesa_Translate \
        --method org.kde.kglobalaccel.Component.invokeShortcut 'hotkey-1-ALT+d'
}

checkSession() {
    read -r DISPLAY WAYLAND_DISPLAY < <(timeout 60 head -1 "$XDG_RUNTIME_DIR/display")
    export DISPLAY WAYLAND_DISPLAY
    dbus-update-activation-environment DISPLAY WAYLAND_DISPLAY
    startUtility
    within "the shortcut from the portal" runShortcut
    within "the panel" isPanelShown
    passed "the portal's shortcut opens the panel"
    checkDoctor 'KDE, Wayland with XWayland' 'translateSelection: held by the utility' 'Screen capture: there'
    ! grep -q 'global shortcuts\|gave a shortcut no keys' "$pictures/$name-program.log" ||
        { cat "$pictures/$name-program.log" >&2; fail "the portal did not bind all"; }
    passed "the doctor's page"
    endUtility
}
