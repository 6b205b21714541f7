#!/usr/bin/env bash
# Builds and runs the tests.  See Usage below.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
source scripts/common.sh
source scripts/wine.sh

Usage() {
    cat <<'END'
usage: ./test.sh [--preset NAME | --windows] [--area NAME]... [-- CTEST ARGUMENTS]

Installs missing packages, builds the tests and runs them.

  --preset NAME   the preset to build and run instead of dev-asan, which finds invalid memory accesses,
                  leaks and undefined behaviour
  --windows       the same as --preset windows: runs the tests of the Windows build under Wine
  --area NAME     build and run only the tests in tests/NAME; may be repeated
END
}

preset=dev-asan
areas=()
ctestArguments=()
runtime=""

ParseArguments() {
    while (($# > 0)); do
        case $1 in
            --help | -h) Usage; exit 0 ;;
            --windows) preset=windows ;;
            --preset | --area)
                (($# > 1)) || Fail "$1 needs a name"
                if [[ $1 == --preset ]]; then preset=$2; else areas+=("$2"); fi
                shift
                ;;
            --) ctestArguments=("${@:2}"); return ;;
            *) Usage >&2; exit 2 ;;
        esac
        shift
    done
}

PackagesFor() {
    case $1 in
        windows) echo windows ;;
        release) echo run ;;
        *) echo test ;;
    esac
}

CleanUp() {
    EndWine
    if [[ -n $runtime ]]; then
        rm -rf "$runtime"
    fi
}

# Keeps the tests away from the user's mailslots, display and Wine prefix.
PrepareSurroundings() {
    runtime=$(mktemp -d)
    export XDG_RUNTIME_DIR=$runtime
    export TALLYHORN_STORM_SECONDS=${TALLYHORN_STORM_SECONDS:-30}
    unset DISPLAY WAYLAND_DISPLAY WINEPREFIX
    trap CleanUp EXIT
    trap 'exit 130' INT TERM HUP
    if [[ $preset == windows ]]; then
        # The prefix is made before the tests, because two tests that start at the same time would both try to make it.
        PrepareWine build/windows/wine
        KeepWineRunning
    fi
}

RunTests() {
    local labels=() joined
    if ((${#areas[@]} > 0)); then
        joined=$(IFS='|'; echo "${areas[*]}")
        labels=(--label-regex "^($joined)\$")
    fi
    Say "Running the tests of the preset $preset"
    ctest --preset "$preset" --no-tests=error --no-label-summary --timeout 300 "${labels[@]}" "${ctestArguments[@]}"
}

ParseArguments "$@"
EnsurePackages "$(PackagesFor "$preset")"
Build "$preset" "${areas[@]/#/tests-}"
PrepareSurroundings
RunTests
