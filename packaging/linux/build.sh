#!/usr/bin/env bash
# Makes the Debian package from the preset release, in build/package/.  Works on a fresh Debian 12.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
source scripts/common.sh

EnsurePackages run package
Build release package-files
rm -rf build/package
if ! cpack --config build/release/CPackConfig.cmake -B build/package >build/release/cpack.log 2>&1; then
    cat build/release/cpack.log >&2
    Fail "cpack could not build the package"
fi
rm -rf build/package/_CPack_Packages
packages=(build/package/*.deb)
[[ -f ${packages[0]} ]] || Fail "cpack created no package"
Say "Created ${packages[0]}; install it with: sudo apt-get install ./${packages[0]}"
