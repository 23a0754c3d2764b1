#!/usr/bin/env bash
# Builds the application for both processors, puts Qt into it, signs it and has it notarised.
#   packaging/macos/package.sh [build|sign|notarise]    without an argument, all three
#
# From the environment:
#   ORVESA_QT                 Qt's folder, with libraries for both processors (those of Qt's own installer are)
#   ORVESA_ARCHITECTURES      "arm64;x86_64" when not set; Homebrew's Qt has this machine's processor only
#   ORVESA_SIGNING_IDENTITY   name of the certificate, "Developer ID Application: ..."
#   ORVESA_NOTARY_PROFILE     keychain profile made with: xcrun notarytool store-credentials
# Secrets stay in the keychain: none is an argument or a variable here.
set -euo pipefail

projectRoot="$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)"
build="$projectRoot/build/macos"
application="$build/bin/orvesa-translate.app"
archive="$build/orvesa-translate.zip"
entitlements="$projectRoot/packaging/macos/orvesa-translate.entitlements"

needed() {
    if [[ -z "${!1:-}" ]]; then
        printf 'error: %s is not set; see the head of this script\n' "$1" >&2
        exit 1
    fi
}

buildApplication() {
    local -a arguments=(-G Ninja -DCMAKE_BUILD_TYPE=Release -DORVESA_TESTS=OFF
        "-DCMAKE_OSX_ARCHITECTURES=${ORVESA_ARCHITECTURES:-arm64;x86_64}")
    local deploy=macdeployqt
    if [[ -n "${ORVESA_QT:-}" ]]; then
        arguments+=("-DCMAKE_PREFIX_PATH=$ORVESA_QT")
        deploy="$ORVESA_QT/bin/macdeployqt"
    fi
    cmake -S "$projectRoot" -B "$build" "${arguments[@]}"
    cmake --build "$build" --target orvesa-translate
    "$deploy" "$application" -always-overwrite
    lipo -info "$application/Contents/MacOS/orvesa-translate"
}

signApplication() {
    needed ORVESA_SIGNING_IDENTITY
    # From the inside out: a signature covers those of what it holds.
    find "$application/Contents" \( -name '*.dylib' -o -name '*.framework' \) -prune -print0 |
        xargs -0 -n 1 codesign --force --timestamp --options runtime --sign "$ORVESA_SIGNING_IDENTITY"
    codesign --force --timestamp --options runtime --entitlements "$entitlements" \
        --sign "$ORVESA_SIGNING_IDENTITY" "$application"
    codesign --verify --deep --strict --verbose=2 "$application"
}

notariseApplication() {
    needed ORVESA_NOTARY_PROFILE
    ditto -c -k --keepParent "$application" "$archive"
    xcrun notarytool submit "$archive" --keychain-profile "$ORVESA_NOTARY_PROFILE" --wait
    xcrun stapler staple "$application"
    spctl --assess --type execute --verbose=2 "$application"
    ditto -c -k --keepParent "$application" "$archive"
    printf 'Ready: %s\n' "$archive"
}

case "${1:-all}" in
build) buildApplication ;;
sign) signApplication ;;
notarise) notariseApplication ;;
all)
    buildApplication
    signApplication
    notariseApplication
    ;;
*)
    printf 'usage: %s [build|sign|notarise]\n' "$0" >&2
    exit 2
    ;;
esac
