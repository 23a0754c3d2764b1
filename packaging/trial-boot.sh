#!/usr/bin/env bash
# A machine that systemd has booted into a login manager, with people who log in by their passwords: the part of
# packaging/trial.sh --boot that runs in the clean root, as root, and nowhere else.
#   trial-boot.sh prepare    what such a machine has, before it is booted
#   trial-boot.sh run        in the booted machine; with 0 when all passed
set -euo pipefail

say() {
    printf -- '-- [%4d s] %s\n' "$SECONDS" "$*"
}

fail() {
    printf 'error: %s\n' "$*" >&2
    journalctl --no-pager --lines 40 >&2 || true
    exit 1
}

[[ -d /trial && $EUID -eq 0 ]] || { echo "error: this is not the clean root" >&2; exit 1; }
identifier=com.orvesa.translate
password='made up'
answer='The library has many books.'

prepare() {
    local -a packages
    mapfile -t packages </trial/boot-packages.txt
    apt-get update -qq
    apt-get install -y -qq --no-install-recommends -o Dpkg::Use-Pty=0 "${packages[@]}" >/trial/apt.log 2>&1 ||
        { tail -20 /trial/apt.log >&2; fail "apt: ${packages[*]}"; }
    apt-get install -y -qq -o Dpkg::Use-Pty=0 /trial/older.deb >/trial/apt.log 2>&1 ||
        { tail -20 /trial/apt.log >&2; fail "apt: the package"; }
    rm /usr/sbin/policy-rc.d
    useradd --create-home --shell /bin/bash alice
    echo "alice:$password" | chpasswd
    systemctl set-default graphical.target 2>/dev/null

    # There is no screen and no virtual terminal: the displays are virtual ones, and sessions are on none.
    cat >/usr/local/bin/display-server <<'END'
#!/bin/bash
arguments=()
while (($#)); do
    case "$1" in
        vt* | -novtswitch) ;;
        -seat) shift ;;
        *) arguments+=("$1") ;;
    esac
    shift
done
exec Xvfb "${arguments[@]}" -screen 0 1280x900x24 -noreset +extension RANDR +extension GLX
END
    chmod 755 /usr/local/bin/display-server
    mkdir -p /etc/lightdm/lightdm.conf.d
    printf '[LightDM]\nlogind-check-graphical=false\n[Seat:*]\nxserver-command=/usr/local/bin/display-server\nuser-session=xfce\n' \
        >/etc/lightdm/lightdm.conf.d/50-trial.conf
    echo 'XDG_VTNR DEFAULT=0 OVERRIDE=0' >/etc/security/no-terminal.conf
    local service
    for service in lightdm lightdm-greeter lightdm-autologin; do
        sed -i '0,/^session/s//session required pam_env.so conffile=\/etc\/security\/no-terminal.conf readenv=0\nsession/' \
            "/etc/pam.d/$service"
    done
    touch /etc/default/locale

    # The machine is switched off when the trial is over, and says how it went.
    cat >/etc/systemd/system/trial.service <<'END'
[Unit]
After=graphical.target
SuccessAction=exit
SuccessActionExitStatus=0
FailureAction=exit
FailureActionExitStatus=1
[Service]
Type=oneshot
ExecStart=/bin/bash /trial/trial-boot.sh run
Environment=HOME=/root LANG=C.UTF-8
TimeoutStartSec=900
StandardOutput=append:/trial/boot.log
StandardError=append:/trial/boot.log
END
    mkdir -p /etc/systemd/system/graphical.target.wants
    ln -s ../trial.service /etc/systemd/system/graphical.target.wants/
}

# await WHAT COMMAND...: until the command succeeds.
await() {
    local what=$1 deadline=$((SECONDS + 90))
    shift
    until "$@" >/dev/null 2>&1; do
        ((SECONDS < deadline)) || fail "not seen in time: $what"
        sleep 0.2
    done
}

isGone() {
    ! "$@"
}

# The greeter's display and, later, that of the session.
onDisplay() {
    DISPLAY=:0 XAUTHORITY=/var/run/lightdm/root/:0 "$@"
}

# Runs a command in alice's session, with the environment that the session has.
inSession() {
    local process
    process="$(pgrep -u alice -x xfce4-session)"
    local -a environment
    mapfile -d '' -t environment <"/proc/$process/environ"
    setpriv --reuid alice --regid alice --init-groups env -i --chdir=/home/alice "${environment[@]}" "$@" </dev/null
}

utility() {
    pgrep -u alice -x orvesa-translat
}

isServing() {
    inSession busctl --user status "$identifier"
}

prompts() {
    grep -c 'Prompt greeter with' /var/log/lightdm/lightdm.log || true
}

hasPrompted() {
    [[ "$(prompts)" -gt "$1" ]]
}

login() {
    await "the greeter" onDisplay xdotool search --onlyvisible --class greeter
    local before
    before="$(prompts)"
    onDisplay xdotool mousemove 688 410 click --repeat 3 1
    onDisplay xdotool type alice
    onDisplay xdotool key Tab
    await "the question for the password" hasPrompted "$before"
    onDisplay xdotool type "$password"
    onDisplay xdotool key Return
    await "the session" pgrep -u alice -x xfce4-session
    await "the utility in the session" utility
    await "the utility's name on the bus" isServing
}

logout() {
    inSession xfce4-session-logout --logout --fast || true
    await "the end of the session" isGone pgrep -u alice -x xfce4-session
    await "the end of the utility" isGone utility
    await "the end of the user's services" isGone pgrep -u alice .
}

# Nothing of ours is in the journal, nor in the log of the session. Where the display goes before the program has heard
# of the session's end, which is the session's affair, Qt says so.
expectQuiet() {
    local said
    said="$({ journalctl --no-pager --output=cat _COMM=orvesa-translat; grep -ai orvesa /home/alice/.xsession-errors; } |
        grep -vF 'The X11 connection broke (error 1).' || true)"
    [[ -z "$said" ]] || fail "the utility said: $said"
}

expectDoctor() {
    local page line
    page="$(inSession orvesa-translate doctor || true)"
    for line in "$@"; do
        grep -qF "$line" <<<"$page" || fail "the doctor does not say \"$line\": $page"
    done
}

run() {
    mkfifo /run/port
    /trial/orvesa-service --answer "$answer" >/run/port &
    local service=$!
    echo "OPENAI_BASE_URL=http://127.0.0.1:$(timeout 60 head -1 /run/port)/v1" >>/etc/environment
    local setting
    for setting in 'settings set settings.defaultProvider openAI' 'settings set settings.targetLanguage English' \
        'settings set settings.appLanguage en' 'autostart on'; do
        # shellcheck disable=SC2086 # words of a command
        runuser -u alice -- env HOME=/home/alice orvesa-translate $setting
    done

    login
    local process
    process="$(utility)"
    grep -q 'session-.*\.scope' "/proc/$process/cgroup" || fail "it is not part of the session"
    grep -qE '^Max core file size +0 ' "/proc/$process/limits" || fail "it may leave core dumps"
    expectDoctor 'XFCE, X11' 'Utility: running' 'translateSelection: held by the utility' 'Start at login: on'
    say "A password typed at the greeter, and the utility started with the session"
    logout
    expectQuiet
    say "It ended with the session, and said nothing"

    # The keyring was made at the first login; it can be used from the second one on.
    login
    expectDoctor 'Key store: running, unlocked'
    printf 'a-made-up-key' | setpriv --reuid alice --regid alice --init-groups env -i \
        DBUS_SESSION_BUS_ADDRESS=unix:path=/run/user/1000/bus HOME=/home/alice PATH=/usr/bin orvesa-translate key set openAI
    inSession busctl --user set-property org.a11y.Bus /org/a11y/bus org.a11y.Status IsEnabled b true
    mkdir -p /trial/pictures
    chown alice:alice /trial/pictures
    # What it asked at its start, with accessibility off, is out of the way of what is looked at.
    process="$(utility)"
    kill "$process"
    await "the end of the utility" isGone utility
    inSession orvesa-translate >/dev/null 2>&1 &
    await "the utility's name on the bus" isServing
    inSession /trial/orvesa-session-check --name booted --editor 'mousepad --disable-server' --editor-class mousepad \
        --tray notifier --answer "$answer" --pictures /trial/pictures --doctor 'Key store: running, unlocked' \
        --doctor 'OpenAI: stored' || fail "the session does not pass its checks"
    say "The login's password opened the key store; the session passed its checks"

    local written
    written="$(cd /home/alice && find . -iname '*orvesa*' | sort)"
    [[ "$written" == "./.config/.$identifier.conf.lock
./.config/autostart/$identifier.desktop
./.config/$identifier.conf" ]] || fail "it wrote: $written"

    process="$(utility)"
    dpkg --install /trial/newer.deb >/dev/null 2>&1 || fail "it cannot be upgraded while it runs"
    [[ "$(utility)" == "$process" ]] || fail "the upgrade ended it"
    inSession orvesa-translate --perform translateSelection || fail "the new program cannot speak to the old one"
    inSession orvesa-translate || fail "the new program does not give way to the old one"
    [[ "$(utility)" == "$process" ]] || fail "there are two of them"
    expectDoctor 'Utility: running' 'translateSelection: held by the utility' 'OpenAI: stored'
    say "It runs on while it is upgraded, and answers the new version"

    kill "$process"
    await "the end of the utility" isGone utility
    inSession busctl --user call "$identifier" /com/orvesa/translate org.freedesktop.Application ActivateAction \
        'sava{sv}' settings 0 0 || fail "the bus does not start it"
    process="$(utility)"
    grep -qz '^DISPLAY=:0' "/proc/$process/environ" || fail "the bus starts it without the display"
    expectDoctor 'translateSelection: held by the utility'
    say "The bus starts it on the session's display"

    # Xfce does not bring the target that the unit hangs on: it is started by hand, and ends with the display.
    kill "$process"
    await "the end of the utility" isGone utility
    rm /home/alice/.config/autostart/*.desktop
    inSession systemctl --user start orvesa-translate || fail "the unit does not start"
    expectDoctor 'translateSelection: held by the utility' 'OpenAI: stored'
    logout
    local unit
    unit="$(journalctl --no-pager --output=cat USER_UNIT=orvesa-translate.service)"
    if [[ -z "$unit" ]] || grep -E 'Failed|Scheduled restart' <<<"$unit"; then
        fail "the unit does not end in order: $unit"
    fi
    say "So does systemd; its unit ends with the display, and is not started again"

    # Nobody types a password at the greeter: the key store stays locked until somebody types it there.
    runuser -u alice -- env HOME=/home/alice orvesa-translate autostart on
    printf '[Seat:*]\nautologin-user=alice\n' >/etc/lightdm/lightdm.conf.d/60-trial.conf
    systemctl restart lightdm
    await "the session" pgrep -u alice -x xfce4-session
    await "the utility in the session" utility
    await "the utility's name on the bus" isServing
    expectDoctor 'Key store: running, locked' 'OpenAI: not looked for'
    inSession orvesa-translate translate 'La biblioteca tiene muchos libros.' >/run/answer &
    local translation=$!
    await "the key store's question" onDisplay xdotool search --onlyvisible --name 'Unlock Login Keyring'
    onDisplay xdotool search --onlyvisible --name 'Unlock Login Keyring' windowfocus --sync
    onDisplay xdotool type "$password"
    onDisplay xdotool key Return
    wait "$translation" || fail "there is no translation once the key store is open"
    [[ "$(</run/answer)" == "$answer" ]] || fail "the answer is: $(</run/answer)"
    say "The key is still there; a key store that is locked is opened when it is wanted"

    process="$(utility)"
    apt-get remove -y -qq orvesa-translate >/trial/apt.log 2>&1 || fail "it cannot be removed while it runs"
    [[ "$(utility)" == "$process" ]] || fail "the removal ended it"
    logout
    expectQuiet
    say "Removed while it ran, it ended with the session"
    kill "$service"
}

"$1"
