# shellcheck shell=bash disable=SC2034,SC2016,SC2154,SC2317
# GNOME's Wayland session without a monitor (its shell, without its settings daemons), as packaging/trial-desktop.sh
# starts it. The shell, which runs scripts in this mode, presses the keys and says what has the keyboard and what is
# copied; the editor is a program of Wayland.
packages=(gnome-shell xwayland gnome-text-editor libgl1-mesa-dri)
variables=(XDG_CURRENT_DESKTOP=GNOME XDG_SESSION_DESKTOP=gnome XDG_SESSION_TYPE=wayland)
session=(gnome-shell --headless --virtual-monitor 1280x900 --unsafe-mode)
service=("${repeating[@]}")

# The compositor comes with the session, and is the display.
startDisplay() {
    unset DISPLAY
}

# Nobody manages logins here: the shell goes without where there is none, and gives up where one cannot be started.
prepareRoot() {
    rm -f /usr/share/dbus-1/system-services/org.freedesktop.login1.service
}

prepareHome() {
    printf '%s' "$document" >~/document.txt
    gsettings set org.gnome.shell welcome-dialog-last-shown-version 999
}

# inShell SCRIPT: prints what it gives, a text.
inShell() {
    local given
    given="$(gdbus call --session --dest org.gnome.Shell --object-path /org/gnome/Shell --method org.gnome.Shell.Eval \
        "const {Clutter, GLib, St} = imports.gi; $1")" || return
    [[ "$given" == "(true, "* ]] || { echo "$given" >&2; return 1; }
    sed -E "s/^\(true, '\"?//; s/\"?'\)$//" <<<"$given"
}

# pressKeys NAME...: holds them one after the other, and lets them go.
pressKeys() {
    inShell "const keyboard = global.trialKeyboard ??= Clutter.get_default_backend().get_default_seat()
            .create_virtual_device(Clutter.InputDeviceType.KEYBOARD_DEVICE);
        const keys = '$*'.split(' ').map(name => Clutter['KEY_' + name]);
        for (const key of keys)
            keyboard.notify_keyval(GLib.get_monotonic_time(), key, Clutter.KeyState.PRESSED);
        for (const key of keys.reverse())
            keyboard.notify_keyval(GLib.get_monotonic_time(), key, Clutter.KeyState.RELEASED);
        'pressed'" >/dev/null
}

movePointer() {
    inShell "const pointer = global.trialPointer ??= Clutter.get_default_backend().get_default_seat()
            .create_virtual_device(Clutter.InputDeviceType.POINTER_DEVICE);
        pointer.notify_absolute_motion(GLib.get_monotonic_time(), $1, $2);
        'moved'" >/dev/null
}

hasKeyboard() {
    [[ "$(inShell 'global.display.focus_window?.get_wm_class() ?? "nothing"')" == *"$1"* ]]
}

isTextGiven() {
    [[ "$(inShell 'global.trialText')" == 'it is '* ]]
}

# holds KIND TEXT: whether the clipboard, or what is selected (PRIMARY), is the text.
holds() {
    inShell "global.trialText = '';
        St.Clipboard.get_default().get_text(St.ClipboardType.$1, (_, text) => global.trialText = 'it is ' + text);
        'asked'" >/dev/null
    becomesTrue isTextGiven && [[ "$(inShell 'global.trialText')" == "it is $2" ]]
}

# The window has the keyboard before its content listens to it, and nothing tells when: it may take more than once.
selectAll() {
    pressKeys Control_L a
    holds PRIMARY "$document"
}

isPanelNear() {
    local left top
    isPanelShown || return
    left="$(sed -n 's/.*Absolute upper-left X: *//p' "$XDG_RUNTIME_DIR/panel")"
    top="$(sed -n 's/.*Absolute upper-left Y: *//p' "$XDG_RUNTIME_DIR/panel")"
    ((left >= $1 - 40 && left <= $1 + 40 && top >= $2 - 40 && top <= $2 + 40))
}

checkSession() {
    within "the shell" inShell 'Main.sessionMode.currentMode'
    DISPLAY="$(inShell 'GLib.getenv("DISPLAY")')"
    WAYLAND_DISPLAY="$(inShell 'GLib.getenv("WAYLAND_DISPLAY")')"
    XAUTHORITY="$(inShell 'GLib.getenv("XAUTHORITY")')"
    export DISPLAY WAYLAND_DISPLAY XAUTHORITY
    dbus-update-activation-environment DISPLAY WAYLAND_DISPLAY XAUTHORITY
    startUtility
    inShell "Main.overview.hide();
        St.Clipboard.get_default().set_text(St.ClipboardType.CLIPBOARD, '$copied');
        'done'" >/dev/null
    gnome-text-editor --standalone ~/document.txt &
    within "the editor's window" hasKeyboard TextEditor
    movePointer 300 200
    within "the document to be selected" selectAll
    passed "an editor of Wayland opens, and its text is selected"
    orvesa-translate --perform translateSelection
    within "the panel beside the pointer" isPanelNear 300 200
    within "the selection to be asked for" wasAskedFor "$document"
    passed "an action, as a key of the desktop's would ask for it, translates the selection beside the pointer"
    hasKeyboard TextEditor || fail "the editor lost the keyboard"
    holds PRIMARY "$document" || fail "the selection changed"
    holds CLIPBOARD "$copied" || fail "the clipboard changed"
    passed "keyboard, selection and clipboard are undisturbed"
    checkDoctor 'GNOME, Wayland with XWayland'
    passed "the doctor's page"
    endUtility
}
