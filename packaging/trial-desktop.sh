#!/usr/bin/env bash
# The installed program in one real desktop: the part of packaging/trial.sh --desktops that runs in the clean root, as an
# ordinary user with a runtime folder, and nowhere else.
#   trial-desktop.sh NAME    the desktop that /trial/desktops/NAME.sh describes
#
# Such a file sets
#   packages     what is installed for it, without what those recommend
#   variables    NAME=VALUE..., what a login manager sets for its session
#   session      the command that starts the session, as the login manager's entry has it
#   editor       an editor of that desktop, and editorClass, part of its window's class
#   tray         notifier, embedding, either or none
#   splash       part of the class of a window that covers the screen until the desktop is ready
#   dismiss      a key that puts away what the desktop greets its users with
#   asks         "yes" where the desktop switches accessibility off at login, so that the program asks for it
#   doctorLines  what the doctor has to say there, besides what it says everywhere
# and may define
#   prepareRoot     as root, after the packages
#   prepareHome     as the user, before the session
#   startDisplay    what the session is shown on, in place of Xvfb; leaves DISPLAY
#   startKeyStore   an unlocked key store, in place of GNOME Keyring
#   checkSession    the checks, in place of orvesa-session-check; with 0 when all passed
set -euo pipefail

fail() {
    printf 'error: %s\n' "$*" >&2
    exit 1
}

[[ -d /trial && "$XDG_RUNTIME_DIR" == /run/user/* ]] || { echo "error: this is not the clean root" >&2; exit 1; }
name=$1
pictures=/trial/pictures
answer='What the service answers.'
variables=()
session=()
editor=
editorClass=
tray=none
splash=
dismiss=
asks=
doctorLines=()

startDisplay() {
    Xvfb -displayfd 3 -screen 0 1280x900x24 -nolisten tcp -noreset +extension RANDR +extension GLX \
        3>"$XDG_RUNTIME_DIR/display" 2>/dev/null &
    DISPLAY=":$(timeout 60 head -1 "$XDG_RUNTIME_DIR/display")"
    export DISPLAY XDG_SESSION_TYPE=x11
}

enableAccessibility() {
    gdbus call --session --dest org.a11y.Bus --object-path /org/a11y/bus \
        --method org.freedesktop.DBus.Properties.Set org.a11y.Status IsEnabled '<true>' >/dev/null
}

startKeyStore() {
    printf 'made up' | gnome-keyring-daemon --unlock --components=secrets >/dev/null
}

checkSession() {
    local -a wanted=()
    local line
    for line in 'Utility: running' 'translateSelection: held by the utility' 'polishSelection: held by the utility' \
        'ocrTranslate: held by the utility' 'Key store: running, unlocked' 'OpenAI: stored' "${doctorLines[@]}"; do
        wanted+=(--doctor "$line")
    done
    if [[ "$asks" == yes ]]; then
        wanted+=(--asks-for-accessibility)
    fi
    /trial/orvesa-session-check --name "$name" --editor "$editor" --editor-class "$editorClass" --tray "$tray" --splash "$splash" --dismiss "$dismiss" \
        --answer "$answer" --pictures "$pictures" "${wanted[@]}"
}

# shellcheck source=/dev/null
source "/trial/desktops/$name.sh"

# All of it on a session bus of its own.
if [[ "${2-}" != inside ]]; then
    cd
    mkdir -p "$pictures"
    mkfifo "$XDG_RUNTIME_DIR/display" "$XDG_RUNTIME_DIR/port"
    export LIBGL_ALWAYS_SOFTWARE=1 GALLIUM_DRIVER=llvmpipe
    startDisplay
    for variable in "${variables[@]}"; do
        export "${variable?}"
    done
    exec dbus-run-session -- bash "$0" "$name" inside
fi

/trial/orvesa-service --answer "$answer" >"$XDG_RUNTIME_DIR/port" &
OPENAI_BASE_URL="http://127.0.0.1:$(timeout 60 head -1 "$XDG_RUNTIME_DIR/port")/v1"
export OPENAI_BASE_URL
dbus-update-activation-environment --all
if declare -F prepareHome >/dev/null; then
    prepareHome
fi
enableAccessibility
startKeyStore
printf 'a-made-up-key' | orvesa-translate key set openAI
orvesa-translate settings set settings.defaultProvider openAI
orvesa-translate settings set settings.targetLanguage English
orvesa-translate settings set settings.appLanguage en
orvesa-translate autostart on

"${session[@]}" >"/trial/pictures/$name.log" 2>&1 &
checkSession
