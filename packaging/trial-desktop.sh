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
#   service      how the service answers, as orvesa-service has it
# and may define
#   prepareRoot     as root, after the packages
#   prepareHome     as the user, before the session
#   startDisplay    what the session is shown on, in place of Xvfb; leaves DISPLAY
#   startKeyStore   an unlocked key store, in place of GNOME Keyring
#   checkSession    the checks, in place of orvesa-session-check, as in sessions of Wayland, for which there are
#                   functions below; with 0 when all passed
set -euo pipefail

usualDoctorLines=('Utility: running' 'Key store: running, unlocked' 'OpenAI: stored')

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
service=(--answer "$answer")

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
    for line in "${usualDoctorLines[@]}" 'translateSelection: held by the utility' \
        'polishSelection: held by the utility' 'ocrTranslate: held by the utility' "${doctorLines[@]}"; do
        wanted+=(--doctor "$line")
    done
    if [[ "$asks" == yes ]]; then
        wanted+=(--asks-for-accessibility)
    fi
    /trial/orvesa-session-check --name "$name" --editor "$editor" --editor-class "$editorClass" --tray "$tray" --splash "$splash" --dismiss "$dismiss" \
        --answer "$answer" --pictures "$pictures" "${wanted[@]}"
}

# The following is for sessions whose windows orvesa-session-check does not see: those of Wayland.

# For "service": answers with the text that it is asked about, and keeps it.
# shellcheck disable=SC2034
repeating=(--command tee "$XDG_RUNTIME_DIR/asked")
# shellcheck disable=SC2034
document='The old library of the city has many books and maps.'
# shellcheck disable=SC2034
copied='Copied before the check'

# becomesTrue COMMAND...: asks for it again and again, a minute at most.
becomesTrue() {
    local end=$((SECONDS + 60))
    until "$@" >/dev/null 2>&1; do
        [[ $SECONDS -lt $end ]] || return 1
        sleep 0.2
    done
}

# within WHAT COMMAND...: the same, which must come true.
within() {
    local what=$1
    shift
    becomesTrue "$@" || fail "in vain: $what"
}

# The program, as one of the X server that the session has.
startUtility() {
    orvesa-translate 2>"$pictures/$name-program.log" &
    utility=$!
    within "the program's name on the bus" gdbus call --session --dest org.freedesktop.DBus \
        --object-path /org/freedesktop/DBus --method org.freedesktop.DBus.GetNameOwner com.orvesa.translate
    grep -q libqxcb "/proc/$utility/maps" || fail "it is no program of XWayland"
}

endUtility() {
    kill "$utility"
    wait "$utility" || fail "it does not end in order"
}

# Leaves where it is in the file "panel".
isPanelShown() {
    xwininfo -name 'Translate → English' | tee "$XDG_RUNTIME_DIR/panel" | grep -q 'Map State: IsViewable'
}

wasAskedFor() {
    [[ -e "$XDG_RUNTIME_DIR/asked" && "$(<"$XDG_RUNTIME_DIR/asked")" == "$1" ]]
}

# checkDoctor LINE...: what its page has to say, besides what it says everywhere.
checkDoctor() {
    local page line
    page="$(orvesa-translate doctor || true)"
    for line in "${usualDoctorLines[@]}" "$@"; do
        grep -q "$line" <<<"$page" || { echo "$page" >&2; fail "the doctor does not say: $line"; }
    done
}

passed() {
    echo "   passed  $*"
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

/trial/orvesa-service "${service[@]}" >"$XDG_RUNTIME_DIR/port" &
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
