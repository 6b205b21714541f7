#!/usr/bin/env bash
# Makes the Debian package of the preset release in build/package/, on a fresh Debian 12 too.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
source scripts/common.sh

EnsurePackages run package
Build release package-files
rm -rf build/package
if ! cpack --config build/release/CPackConfig.cmake -B build/package >build/release/cpack.log 2>&1; then
    cat build/release/cpack.log >&2
    Fail "the package could not be made"
fi
rm -rf build/package/_CPack_Packages
packages=(build/package/*.deb)
[[ -f ${packages[0]} ]] || Fail "there is no package"
Say "The package is ${packages[0]}; sudo apt-get install ./${packages[0]} installs it"
