# shellcheck shell=bash disable=SC2034,SC2016,SC2154,SC2317
# Sway in a window of an X server without a monitor, as packaging/trial-desktop.sh starts it, with the two lines in its
# configuration that the program wants there. That X server presses its keys; the editor is a program of Wayland.
packages=(sway xwayland xdotool wl-clipboard jq mousepad libgl1-mesa-dri)
variables=(XDG_CURRENT_DESKTOP=sway XDG_SESSION_DESKTOP=sway XDG_SESSION_TYPE=wayland WLR_BACKENDS=x11
    WLR_RENDERER=pixman)
session=(sway)
service=("${repeating[@]}")

prepareHome() {
    printf '%s' "$document" >~/document.txt
    mkdir -p ~/.config/sway
    printf '%s\n' 'bindsym Mod1+d exec orvesa-translate --perform translateSelection' \
        'no_focus [class="Orvesa Translate" window_type="utility"]' \
        'exec echo "$DISPLAY $WAYLAND_DISPLAY $SWAYSOCK" >"$XDG_RUNTIME_DIR/display"' >~/.config/sway/config
}

hasKeyboard() {
    swaymsg --type get_tree --raw | jq --exit-status --arg program "$1" \
        'any(recurse(.nodes[], .floating_nodes[]); .focused and .app_id == $program)'
}

isSelected() {
    [[ "$(wl-paste --primary --no-newline)" == "$document" ]]
}

pressKeys() {
    DISPLAY="$outerDisplay" xdotool key "$1"
}

# The window has the keyboard before its content listens to it, and nothing tells when: it may take more than once.
selectAll() {
    pressKeys ctrl+a
    isSelected
}

checkSession() {
    outerDisplay="$DISPLAY"
    read -r DISPLAY WAYLAND_DISPLAY SWAYSOCK < <(timeout 60 head -1 "$XDG_RUNTIME_DIR/display")
    export DISPLAY WAYLAND_DISPLAY SWAYSOCK
    dbus-update-activation-environment DISPLAY WAYLAND_DISPLAY SWAYSOCK
    startUtility
    wl-copy "$copied"
    DISPLAY="$outerDisplay" xdotool mousemove 300 200
    mousepad ~/document.txt &
    within "the editor's window" hasKeyboard mousepad
    within "the document to be selected" selectAll
    passed "an editor of Wayland opens, and its text is selected"
    pressKeys alt+d
    within "the panel" isPanelShown
    within "the selection to be asked for" wasAskedFor "$document"
    passed "a key of the compositor's translates the selection"
    hasKeyboard mousepad >/dev/null || fail "the editor lost the keyboard"
    isSelected || fail "the selection changed"
    [[ "$(wl-paste --no-newline)" == "$copied" ]] || fail "the clipboard changed"
    passed "keyboard, selection and clipboard are undisturbed"
    checkDoctor 'sway, Wayland with XWayland'
    passed "the doctor's page"
    endUtility
}
