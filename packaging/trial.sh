#!/usr/bin/env bash
# Tries the program on a clean Debian: a root folder made with debootstrap, seen by nothing else. Needs root or sudo, the
# machine's package mirror, and some minutes; ./test --package runs it.
#   packaging/trial.sh            the package: install an older version, run, upgrade, translate, remove
#   packaging/trial.sh --tree     the tree: ./run --demo and ./test from nothing, as a user with sudo
#   packaging/trial.sh --demo     the tree, without ./test
#   packaging/trial.sh --desktops [NAME...]
#                                 the package in real desktops, those of packaging/desktops or the ones named, each in a
#                                 root of its own; pictures of them are under build/trial/pictures then
#   packaging/trial.sh --boot     the package on a machine that systemd boots, whose people log in by their passwords
# ORVESA_TRIAL names another folder in place of build/trial: an empty one, or one that a trial has used before.
# What is kept for the next time: build/trial/base.tar, the clean Debian. Remove it to have it made anew.
set -euo pipefail
# shellcheck source=packaging/setup.sh
source "$(dirname "${BASH_SOURCE[0]}")/setup.sh"

defaultFolder="$projectRoot/build/trial"
folder="${ORVESA_TRIAL:-$defaultFolder}"
kind="${1---package}"
shift || true
codename="$(. /etc/os-release && echo "$VERSION_CODENAME")"

# Parts of the folder are removed as root: it has to be one of ours, which a stamp in it says.
takeFolder() {
    mkdir -p "$folder"
    folder="$(cd "$folder" && pwd -P)"
    if [[ ! -e "$folder/.trial" && ! "$folder" -ef "$defaultFolder" && -n "$(ls -A "$folder")" ]]; then
        fail "$folder is not empty, and no trial has used it before"
    fi
    touch "$folder/.trial"
}

# The places of this process among the cgroups, one in each hierarchy.
ownGroups() {
    local controllers path
    while IFS=: read -r _ controllers path; do
        if [[ -n "$controllers" ]]; then
            echo "/sys/fs/cgroup/${controllers#name=}${path%/}"
        elif [[ -d /sys/fs/cgroup/unified ]]; then
            echo "/sys/fs/cgroup/unified${path%/}"
        else
            echo "/sys/fs/cgroup${path%/}"
        fi
    done </proc/self/cgroup
}

# Removes what only a trial under way needs, the groups that processes inside made for themselves included: those are
# empty then. Mounts of roots were seen by nothing else, and have ended.
cleanUp() {
    local group
    asRoot rm -rf --one-file-system "$folder/root" "$folder/common" "$folder/archives" "$folder/base" || true
    while IFS= read -r group; do
        asRoot find "$group/orvesa-trial" "$group/payload" "$group/supervisor" -depth -type d -exec rmdir {} + \
            2>/dev/null || true
    done < <(ownGroups)
    if [[ -n "${madeRunFolder-}" ]]; then
        asRoot rm -rf --one-file-system /run/systemd/nspawn || true
        asRoot rmdir /run/systemd 2>/dev/null || true # if nobody else has anything in it
    fi
}

# The mirrors that this machine itself uses, as lines for apt.
machineSources() {
    # shellcheck disable=SC2016 # these are apt's own, not the shell's
    apt-get indextargets --format '$(SITE) $(RELEASE) $(COMPONENT)' 'Created-By: Packages' |
        awk -v codename="$codename" '$2 ~ "^" codename { print "deb", $1, $2, $3 }' | sort -u
}

# How this machine reaches them (proxies, clocks that are wrong), for the apt inside.
machineSettings() {
    apt-config dump | grep -E '^Acquire::(https?::|Check-|ForceIPv|Retries)' || true
}

makeBase() {
    if [[ -s "$folder/base.tar" ]]; then
        return
    fi
    local mirror
    mirror="$(machineSources | awk -v codename="$codename" '$3 == codename && $4 == "main" { print $2; exit }')"
    [[ -n "$mirror" ]] || fail "apt on this machine has no mirror for $codename"
    say "Making a clean Debian $codename"
    asRoot rm -rf "$folder/base"
    asRoot debootstrap --variant=minbase "$codename" "$folder/base" "$mirror" >"$folder/debootstrap.log" 2>&1 ||
        { tail -20 "$folder/debootstrap.log" >&2; fail "debootstrap failed"; }
    asRoot tar --directory "$folder/base" --create --file "$folder/base.tar.new" .
    asRoot rm -rf "$folder/base"
    mv "$folder/base.tar.new" "$folder/base.tar"
}

makeRoot() {
    asRoot rm -rf "$folder/root"
    mkdir -p "$folder/root"
    asRoot tar --directory "$folder/root" --extract --preserve-permissions --file "$folder/base.tar"
    machineSources | asRoot tee "$folder/root/etc/apt/sources.list" >/dev/null
    machineSettings | asRoot tee "$folder/root/etc/apt/apt.conf.d/90machine" >/dev/null
    asRoot cp --dereference /etc/resolv.conf /etc/hosts "$folder/root/etc/"
    echo '127.0.1.1 clean' | asRoot tee -a "$folder/root/etc/hosts" >/dev/null
    # Services of packages are not started here.
    printf '#!/bin/sh\nexit 101\n' | asRoot install -m 755 /dev/stdin "$folder/root/usr/sbin/policy-rc.d"
    # Nothing of it has to outlive a power cut.
    echo force-unsafe-io | asRoot tee "$folder/root/etc/dpkg/dpkg.cfg.d/trial" >/dev/null
    asRoot mkdir -p "$folder/root/trial"
    asRoot cp "$projectRoot/packaging/trial-root.sh" "$projectRoot/packaging/trial-session.sh" "$folder/root/trial/"
}

# The same package under an earlier version, with a file that later versions no longer have.
makeOlderPackage() {
    rm -rf "$folder/older"
    dpkg-deb --raw-extract "$packageFile" "$folder/older"
    sed -i 's/^Version: .*/Version: 0.9.0/' "$folder/older/DEBIAN/control"
    echo "no longer there" >"$folder/older/usr/share/doc/orvesa-translate/obsolete"
    rm "$folder/older/usr/share/metainfo/"*.xml
    (cd "$folder/older" && find usr -type f -exec md5sum {} + >DEBIAN/md5sums)
    dpkg-deb --root-owner-group --build "$folder/older" "$folder/older.deb" >/dev/null
}

# Mounts and processes of the root live in spaces of their own and end with its first process. It becomes the root of its
# space, as on a machine: below a mere chroot the kernel lets nobody make user namespaces, which tests make.
inRoot() {
    # shellcheck disable=SC2016 # for the shell inside
    asRoot unshare --mount --pid --ipc --uts --fork --kill-child bash -ec '
        root=$1
        shift
        hostname clean
        mount --make-rprivate /
        mount --bind "$root" "$root"
        mount -t proc proc "$root/proc"
        mount -t sysfs -o ro sysfs "$root/sys"
        if [[ -d /sys/fs/cgroup ]]; then
            mount --rbind /sys/fs/cgroup "$root/sys/fs/cgroup"
        fi
        mount --rbind /dev "$root/dev"
        mount -t tmpfs tmpfs "$root/dev/shm"
        mount -t tmpfs -o mode=755 tmpfs "$root/run"
        if [[ -d "$root/../archives" ]]; then
            mount --bind "$root/../archives" "$root/var/cache/apt/archives"
        fi
        cd "$root"
        pivot_root . .
        umount --lazy .
        cd /
        exec /usr/bin/env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LANG=C.UTF-8 \
            DEBIAN_FRONTEND=noninteractive "$@"' bash "$folder/root" "$@"
}

# tryDesktops [NAME...]: every desktop is tried, whatever became of those before it.
tryDesktops() {
    local -a names=("$@") failed=()
    local name file
    if [[ ${#names[@]} -eq 0 ]]; then
        for file in "$projectRoot"/packaging/desktops/*.sh; do
            names+=("$(basename "$file" .sh)")
        done
    fi
    for name in "${names[@]}"; do
        [[ -e "$projectRoot/packaging/desktops/$name.sh" ]] || fail "there is no packaging/desktops/$name.sh"
    done
    # What all of them have is installed once, and what was downloaded for one root serves the others.
    mkdir -p "$folder/pictures" "$folder/archives/partial"
    makeRoot
    asRoot cp "$packageFile" "$folder/root/trial/newer.deb"
    packagesOf desktops | asRoot tee "$folder/root/trial/desktop-packages.txt" >/dev/null
    inRoot bash /trial/trial-root.sh desktops
    asRoot rm -rf "$folder/common"
    asRoot mv "$folder/root" "$folder/common"
    for name in "${names[@]}"; do
        say "Desktop: $name"
        asRoot rm -rf "$folder/root"
        asRoot cp --archive --reflink=auto "$folder/common" "$folder/root"
        asRoot cp -r "$projectRoot/packaging/desktops" "$projectRoot/packaging/trial-desktop.sh" "$folder/root/trial/"
        asRoot cp "$builtFolder/bin/orvesa-session-check" "$builtFolder/bin/orvesa-service" "$folder/root/trial/"
        inRoot bash /trial/trial-root.sh desktop "$name" || failed+=("$name")
        if [[ -d "$folder/root/trial/pictures" ]]; then
            asRoot cp -r "$folder/root/trial/pictures/." "$folder/pictures/"
        fi
    done
    [[ ${#failed[@]} -eq 0 ]] || fail "not everything passed in: ${failed[*]}"
}

# The root as a machine of its own, booted by its systemd; ends with the status that the machine is switched off with.
# One that does not end is switched off after half an hour, which gives 124.
bootRoot() {
    local -a own=()
    if [[ ! -d /run/systemd/system ]]; then
        # There is nobody here to give it a place among the machine's own units.
        own=(--register=no --keep-unit)
        [[ -d /run/systemd/nspawn ]] || madeRunFolder=yes
        asRoot mkdir -p /run/systemd
    fi
    # Key stores lock their memory. In the foreground, since it would not hear of Ctrl+C otherwise.
    asRoot timeout --foreground --kill-after=30 1800 systemd-nspawn --quiet --directory "$folder/root" --boot \
        --machine clean --private-network --console pipe --system-call-filter @memlock "${own[@]}" \
        </dev/null >"$folder/boot.log" 2>&1
}

takeFolder
installPackages build run test package
trap cleanUp EXIT
cleanUp # what a trial left that was killed
case "$kind" in
    --package)
        makePackage "$folder/package"
        buildPrograms orvesa-demo orvesa-service
        makeOlderPackage
        makeBase
        makeRoot
        asRoot cp "$packageFile" "$folder/root/trial/newer.deb"
        asRoot cp "$folder/older.deb" "$folder/root/trial/older.deb"
        asRoot cp "$builtFolder/bin/orvesa-demo" "$builtFolder/bin/orvesa-service" "$folder/root/trial/"
        # The demonstration looks for its helper where that was built.
        asRoot mkdir -p "$folder/root$builtFolder/bin"
        asRoot cp "$builtFolder/bin/orvesa-desktop-guard" "$folder/root$builtFolder/bin/"
        packagesOf test | asRoot tee "$folder/root/trial/demonstration.txt" >/dev/null
        begun=$SECONDS
        inRoot bash /trial/trial-root.sh package
        ;;
    --tree | --demo)
        makeBase
        makeRoot
        # What a clone has, with what is not committed yet.
        asRoot mkdir -p "$folder/root/trial/tree"
        git -C "$projectRoot" ls-files --cached --others --exclude-standard -z |
            (cd "$projectRoot" && while IFS= read -r -d '' file; do [[ -e "$file" ]] && printf '%s\0' "$file"; done) |
            asRoot tar --directory "$projectRoot" --create --null --files-from - |
            asRoot tar --directory "$folder/root/trial/tree" --extract
        begun=$SECONDS
        inRoot bash /trial/trial-root.sh "${kind#--}"
        ;;
    --desktops)
        makePackage "$folder/package"
        buildPrograms orvesa-session-check orvesa-service
        makeBase
        begun=$SECONDS
        tryDesktops "$@"
        ;;
    --boot)
        installPackages container
        makePackage "$folder/package"
        buildPrograms orvesa-session-check orvesa-service
        makeOlderPackage
        makeBase
        makeRoot
        asRoot cp "$packageFile" "$folder/root/trial/newer.deb"
        asRoot cp "$folder/older.deb" "$projectRoot/packaging/trial-boot.sh" "$builtFolder/bin/orvesa-session-check" \
            "$builtFolder/bin/orvesa-service" "$folder/root/trial/"
        packagesOf boot | asRoot tee "$folder/root/trial/boot-packages.txt" >/dev/null
        begun=$SECONDS
        inRoot bash /trial/trial-boot.sh prepare
        booted=0
        bootRoot || booted=$?
        asRoot cat "$folder/root/trial/boot.log" || true
        if [[ $booted -ne 0 ]]; then
            tail -20 "$folder/boot.log" >&2
            fail "the booted machine ended with $booted"
        fi
        ;;
    *) fail "usage: packaging/trial.sh [--package | --tree | --demo | --desktops [NAME...] | --boot]" ;;
esac
say "The trial ($kind) passed in $((SECONDS - begun)) s"
