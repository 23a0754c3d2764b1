# shellcheck shell=bash
# What ./run, ./test and ./bench share: where the tree is, which packages it needs, how a preset is built.
# Sourced, never started; the caller has set -euo pipefail.

projectRoot="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"

say() {
    printf -- '-- %s\n' "$*"
}

fail() {
    printf 'error: %s\n' "$*" >&2
    exit 1
}

# The packages of the given lists, comments and blank lines left out.
packagesOf() {
    local list
    for list in "$@"; do
        sed -e 's/#.*//' -e 's/[[:space:]]//g' -e '/^$/d' "$projectRoot/packaging/packages-$list.txt"
    done | sort -u
}

asRoot() {
    if [[ "$(id -u)" -eq 0 ]]; then
        "$@"
    elif command -v sudo >/dev/null; then
        sudo "$@"
    else
        fail "installing packages needs root or sudo: $*"
    fi
}

# installPackages LIST...: installs those packages of packaging/packages-LIST.txt that are missing.
installPackages() {
    if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
        say "Not a Debian system: the packages of packaging/packages-{$(IFS=,; echo "$*")}.txt have to be there already"
        return
    fi
    local -a wanted missing
    mapfile -t wanted < <(packagesOf "$@")
    mapfile -t missing < <(comm -23 <(printf '%s\n' "${wanted[@]}") \
        <(dpkg-query -W -f='${db:Status-Status} ${Package}\n' "${wanted[@]}" 2>/dev/null |
            sed -n 's/^installed //p' | sort -u))
    if [[ ${#missing[@]} -eq 0 ]]; then
        return
    fi
    say "Installing ${#missing[@]} packages: ${missing[*]}"
    asRoot env DEBIAN_FRONTEND=noninteractive apt-get update -qq
    asRoot env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends \
        -o Dpkg::Use-Pty=0 "${missing[@]}" >/dev/null
}

# buildPreset PRESET [TARGET...]: configures build/PRESET when needed and builds the targets, or everything.
buildPreset() {
    local preset=$1
    shift
    local folder="$projectRoot/build/$preset"
    local stamp="$folder/.configured"
    if [[ ! -e "$stamp" || "$projectRoot/CMakePresets.json" -nt "$stamp" ]]; then
        say "Configuring build/$preset"
        (cd "$projectRoot" && cmake --preset "$preset" >/dev/null)
        touch "$stamp"
    fi
    local -a targets=()
    if [[ $# -gt 0 ]]; then
        targets=(--target "$@")
    fi
    say "Building build/$preset"
    cmake --build "$folder" "${targets[@]}"
}

# The build that packages are made of: the release build, or a folder that somebody has built already.
builtFolder="${ORVESA_BUILT-$projectRoot/build/release}"

# buildPrograms TARGET...: builds them there, unless that is done already.
buildPrograms() {
    if [[ -z "${ORVESA_BUILT-}" ]]; then
        buildPreset release "$@"
    fi
}

# makePackage FOLDER: leaves the Debian package in the folder; packageFile is its path then.
makePackage() {
    local folder=$1
    buildPrograms orvesa-translate orvesa-recognize orvesa-screencapture
    rm -rf "$folder"
    # Every file in it is as old as the commit, so that the same build gives the same package.
    local -x SOURCE_DATE_EPOCH="${SOURCE_DATE_EPOCH:-$(git -C "$projectRoot" log -1 --format=%ct 2>/dev/null || date +%s)}"
    cpack --config "$builtFolder/CPackConfig.cmake" -B "$folder" >"$projectRoot/build/package.log" 2>&1 ||
        { cat "$projectRoot/build/package.log" >&2; fail "no package could be made"; }
    packageFile="$(echo "$folder"/*.deb)"
    say "Package: $packageFile"
}
