#!/usr/bin/env bash
# Builds the Debian package from the release build.
#   packaging/package.sh    leaves build/package/orvesa-translate_VERSION_ARCHITECTURE.deb
set -euo pipefail
# shellcheck source=packaging/setup.sh
source "$(dirname "${BASH_SOURCE[0]}")/setup.sh"

installPackages build run package
makePackage "$projectRoot/build/package"
