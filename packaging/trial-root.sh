#!/usr/bin/env bash
# What packaging/trial.sh has done inside the clean root. Runs as root there, and nowhere else.
set -euo pipefail

say() {
    printf -- '-- [%4d s] %s\n' "$SECONDS" "$*"
}

fail() {
    printf 'error: %s\n' "$*" >&2
    exit 1
}

[[ -d /trial && -x /usr/sbin/policy-rc.d ]] || { echo "error: this is not the clean root" >&2; exit 1; }

install() {
    apt-get install -y -qq -o Dpkg::Use-Pty=0 "$@" >/trial/apt.log 2>&1 || { tail -20 /trial/apt.log >&2; fail "apt: $*"; }
}

makeUser() {
    useradd --create-home --shell /bin/bash tester
}

asUser() {
    runuser -u tester -- env HOME=/home/tester LANG=C.UTF-8 "$@"
}

version() {
    dpkg-query -W -f='${Version}' orvesa-translate
}

# Runs a program as the user of a session that systemd could have booted: with a runtime folder, and a cgroup of its own.
asSessionUser() {
    local runtime=/run/user/1000 line mount
    mkdir -p /run/systemd/system
    command install -d -o tester -g tester -m 700 "$runtime"
    local -a groups=()
    # Version 2 alone, version 2 beside version 1, and version 1's hierarchy of systemd.
    for line in 0::=/sys/fs/cgroup 0::=/sys/fs/cgroup/unified :name=systemd:=/sys/fs/cgroup/systemd; do
        mount="${line##*=}"
        if [[ -e "$mount/cgroup.procs" ]]; then
            groups+=("$mount$(sed -n "s/^.*${line%=*}//p" /proc/self/cgroup)/orvesa-trial")
        fi
    done
    [[ ${#groups[@]} -gt 0 ]] || fail "there are no cgroups"
    mkdir -p "${groups[@]}"
    chown -R tester:tester "${groups[@]}"
    local group
    (
        for group in "${groups[@]}"; do
            echo "$BASHPID" >"$group/cgroup.procs"
        done
        exec setpriv --reuid tester --regid tester --init-groups env -i HOME=/home/tester USER=tester LANG=C.UTF-8 \
            PATH=/usr/bin:/bin XDG_RUNTIME_DIR="$runtime" "$@"
    )
}

tryPackage() {
    makeUser
    apt-get update -qq
    local preferences=/home/tester/.config/com.orvesa.translate.conf

    install /trial/older.deb
    [[ "$(version)" == 0.9.0 ]] || fail "the older version is not installed"
    [[ -e /usr/share/doc/orvesa-translate/obsolete ]] || fail "the older version lacks its file"
    say "Installed version $(version) with $(dpkg-query -W -f='.\n' | wc -l) packages in the root"
    asUser orvesa-translate --version
    asUser orvesa-translate settings set settings.targetLanguage Japanese
    asUser orvesa-translate settings set settings.model.openAI kept-by-the-trial
    asUser orvesa-translate autostart on
    [[ "$(asUser orvesa-translate autostart status)" == on ]] || fail "it is not started at login"
    [[ "$(stat -c %a "$preferences")" == 600 ]] || fail "others can read the preferences"
    local before
    before="$(sha256sum "$preferences")"

    install /trial/newer.deb
    [[ "$(version)" != 0.9.0 ]] || fail "nothing was upgraded"
    [[ ! -e /usr/share/doc/orvesa-translate/obsolete ]] || fail "a file of the older version is left"
    [[ "$(sha256sum "$preferences")" == "$before" ]] || fail "the upgrade changed the preferences"
    [[ "$(asUser orvesa-translate settings get settings.targetLanguage)" == Japanese ]] || fail "the language is lost"
    [[ "$(asUser orvesa-translate settings get settings.model.openAI)" == kept-by-the-trial ]] || fail "the model is lost"
    say "Upgraded to version $(version); the settings are kept"
    local -a wrong
    mapfile -t wrong < <(dpkg --verify orvesa-translate)
    # Documentation can be left out by the base system's own rules.
    [[ ${#wrong[@]} -eq 0 ]] || printf '%s\n' "${wrong[@]}"
    asUser orvesa-translate doctor >/trial/doctor.txt && fail "nothing is wrong without a desktop?"
    grep -q 'Text recognition: English, Japanese and Traditional Chinese' /trial/doctor.txt ||
        { cat /trial/doctor.txt >&2; fail "the recommended languages are not there"; }
    say "Text recognition has the languages that the package recommends"

    mapfile -t needed </trial/demonstration.txt
    install --no-install-recommends "${needed[@]}"
    say "The demonstration's own packages are there; it runs /usr/bin/orvesa-translate for an ordinary user"
    asUser bash -ec 'cd && /trial/orvesa-demo --program /usr/bin/orvesa-translate --screenshot /home/tester/panel.png'
    [[ -s /home/tester/panel.png ]] || fail "there is no screenshot"
    asSessionUser bash /trial/trial-session.sh
    say "The systemd unit ran in a session of systemd, with its limits"

    local -a files
    mapfile -t files < <(dpkg -L orvesa-translate | while read -r path; do if [[ -f "$path" ]]; then echo "$path"; fi; done)
    apt-get remove -y -qq -o Dpkg::Use-Pty=0 orvesa-translate >/trial/apt.log 2>&1 ||
        { cat /trial/apt.log >&2; fail "it cannot be removed"; }
    local file
    for file in "${files[@]}"; do
        [[ ! -e "$file" ]] || fail "left after the removal: $file"
    done
    [[ -z "$(find /usr /etc /var/lib /lib -iname '*orvesa*' -not -path '/var/lib/dpkg/*' -print -quit)" ]] ||
        fail "something is left after the removal"
    [[ "$(sha256sum "$preferences")" == "$before" ]] || fail "the removal changed the user's preferences"
    # It has no configuration of its own, so that nothing is left to be purged.
    if dpkg-query -W orvesa-translate >/dev/null 2>&1; then
        fail "dpkg still knows it"
    fi
    say "Removed: ${#files[@]} files are gone, the user's preferences are kept"
}

tryTree() {
    makeUser
    apt-get update -qq
    install --no-install-recommends sudo git ca-certificates
    echo 'tester ALL=(ALL) NOPASSWD: ALL' >/etc/sudoers.d/tester
    mv /trial/tree /home/tester/tree
    chown -R tester:tester /home/tester/tree
    asUser bash -ec 'cd ~/tree && ./run --demo'
    say "./run --demo is done, from nothing"
    if [[ "$1" == tree ]]; then
        local begun=$SECONDS
        asUser bash -ec 'cd ~/tree && ./test'
        say "./test is done, in $((SECONDS - begun)) s"
    fi
}

# What every desktop's root has.
prepareDesktops() {
    local -a needed
    makeUser
    apt-get update -qq
    mapfile -t needed </trial/desktop-packages.txt
    install --no-install-recommends "${needed[@]}"
    install /trial/newer.deb
    say "Installed the program"
}

# One of packaging/desktops: installed, started for an ordinary user, and checked from within.
tryDesktop() {
    local name=$1 runtime=/run/user/1000
    local -a packages=()
    # shellcheck source=/dev/null
    source "/trial/desktops/$name.sh"
    install --no-install-recommends "${packages[@]}"
    if declare -F prepareRoot >/dev/null; then
        prepareRoot
    fi
    say "Installed $name: $(dpkg-query -W -f='.\n' | wc -l) packages in the root"
    command install -d -o tester -g tester -m 755 /trial/pictures
    command install -d -o tester -g tester -m 700 "$runtime"
    command install -d -m 1777 /tmp/.X11-unix /tmp/.ICE-unix
    # Without a manager of units it starts its services itself.
    mkdir -p /run/dbus
    dbus-uuidgen --ensure
    dbus-daemon --system --fork
    setpriv --reuid tester --regid tester --init-groups env -i HOME=/home/tester USER=tester LOGNAME=tester \
        SHELL=/bin/bash LANG=C.UTF-8 PATH=/usr/local/bin:/usr/bin:/bin:/usr/games XDG_RUNTIME_DIR="$runtime" \
        bash /trial/trial-desktop.sh "$name" || fail "$name: not everything passed"
    say "$name passed"
}

case "$1" in
    desktops) prepareDesktops ;;
    desktop) tryDesktop "$2" ;;
    package) tryPackage ;;
    tree | demo) tryTree "$1" ;;
    *) fail "what is to be tried?" ;;
esac
