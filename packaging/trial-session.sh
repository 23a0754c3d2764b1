#!/usr/bin/env bash
# The optional systemd unit in a session of systemd: the part of packaging/trial.sh that runs in the clean root, as an
# ordinary user whose runtime folder and cgroup are there, and nowhere else.
set -euo pipefail

fail() {
    printf 'error: %s\n' "$*" >&2
    systemctl --user --no-pager status orvesa-translate >&2 || true
    cat "$XDG_RUNTIME_DIR/unit.log" >&2 || true
    exit 1
}

[[ -d /trial && "$XDG_RUNTIME_DIR" == /run/user/* ]] || { echo "error: this is not the clean root" >&2; exit 1; }
cd
units=.config/systemd/user
mkdir -p "$units/default.target.wants"
mkfifo "$XDG_RUNTIME_DIR/ready" "$XDG_RUNTIME_DIR/display" "$XDG_RUNTIME_DIR/port"

# A manager of units, which says when it has started what it starts at first; the session bus is a unit of it.
printf '[Service]\nType=oneshot\nExecStart=/bin/sh -c "echo >%%t/ready"\n[Unit]\nRequires=dbus.socket\nAfter=dbus.socket\n' \
    >"$units/ready.service"
ln -s ../ready.service "$units/default.target.wants/"
/lib/systemd/systemd --user --log-level=warning --log-target=console &
manager=$!
timeout 60 cat "$XDG_RUNTIME_DIR/ready" >/dev/null || fail "systemd does not start"
export DBUS_SESSION_BUS_ADDRESS="unix:path=$XDG_RUNTIME_DIR/bus"

# What a session has: a display, an unlocked key store, and a target that desktops bind to the graphical session's.
Xvfb -displayfd 3 -screen 0 1280x900x24 -nolisten tcp -noreset 3>"$XDG_RUNTIME_DIR/display" 2>/dev/null &
server=$!
DISPLAY=":$(timeout 60 head -1 "$XDG_RUNTIME_DIR/display")"
export DISPLAY XDG_SESSION_TYPE=x11
dbus-update-activation-environment --systemd DISPLAY XDG_SESSION_TYPE
printf 'made up' | gnome-keyring-daemon --unlock --components=secrets >/dev/null
printf '[Unit]\nBindsTo=graphical-session.target\nBefore=graphical-session.target\n' >"$units/trial-session.target"

/trial/orvesa-service --answer 'The library has many books.' >"$XDG_RUNTIME_DIR/port" &
service=$!
port="$(timeout 60 head -1 "$XDG_RUNTIME_DIR/port")"
printf 'a-made-up-key' | orvesa-translate key set gemini

# There is no journal here.
mkdir "$units/orvesa-translate.service.d"
printf '[Service]\nStandardError=append:%%t/unit.log\n' >"$units/orvesa-translate.service.d/log.conf"

# The unit comes with the session and goes with it. It is started when it has its name on the bus.
systemctl --user --quiet enable orvesa-translate
systemctl --user start trial-session.target
systemctl --user start orvesa-translate || fail "the unit does not start"
process="$(systemctl --user show --property=MainPID --value orvesa-translate)"
grep -qE '^NoNewPrivs:\s1$' "/proc/$process/status" || fail "it may gain privileges"
grep -qE '^Seccomp:\s2$' "/proc/$process/status" || fail "its system calls are not filtered"
page="$(orvesa-translate doctor || true)"
for line in 'Utility: running' 'translateSelection: held by the utility' 'Key store: running, unlocked' 'Gemini: stored'; do
    grep -q "$line" <<<"$page" || { echo "$page" >&2; fail "the doctor does not say: $line"; }
done
orvesa-translate --perform settings || fail "it does not answer"
orvesa-translate --perform translateSelection || fail "it takes no action"

# A request with its key, and text recognition in a child, with the unit's own limits.
mapfile -t limits < <(sed -n '/^\[Service\]/,/^\[/p' /usr/lib/systemd/user/orvesa-translate.service |
    grep -E '^[A-Z]' | grep -vE '^(Type|BusName|ExecStart|Restart|SuccessExitStatus)=' | sed 's/^/--property=/')
[[ ${#limits[@]} -ge 12 ]] || fail "the unit has only ${#limits[@]} limits"
limited() {
    timeout 60 systemd-run --user --wait --pipe --quiet --collect "${limits[@]}" \
        --setenv=GOOGLE_GEMINI_BASE_URL="http://127.0.0.1:$port" --setenv=LANG=C.UTF-8 "$@" </dev/null
}
answer="$(limited orvesa-translate translate 'La biblioteca tiene muchos libros.')" ||
    fail "the limits keep it from asking a service"
[[ "$answer" == 'The library has many books.' ]] || fail "the answer is: $answer"
text="$(limited orvesa-translate recognize "$HOME/panel.png")" || fail "the limits keep it from reading a picture"
[[ "$text" == *Translate* ]] || fail "it reads: $text"
if limited unshare --user true 2>/dev/null; then
    fail "the limits let it make namespaces"
fi

[[ "$(systemctl --user show --property=MainPID --value orvesa-translate)" == "$process" ]] || fail "it started again"
systemctl --user stop trial-session.target
timeout 30 tail --pid="$process" --follow /dev/null || fail "it outlives the session"
[[ "$(systemctl --user show --property=Result --value orvesa-translate)" == success ]] || fail "it does not end in order"
kill "$service" "$server"
systemctl --user exit
wait "$manager"
