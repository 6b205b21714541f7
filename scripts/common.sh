# shellcheck shell=bash
# Functions that run.sh, test.sh, packaging/ and .ci/ share: which packages each task needs, and how a preset is
# configured and built.  Scripts source this file with the root of the repository as current folder.

# The Debian packages that each task needs.
declare -A Packages=(
    [run]="g++ cmake ninja-build ccache qt6-base-dev libxcb1-dev libpulse-dev libgmock-dev libbenchmark-dev fonts-dejavu-core libchm-dev libxxhash-dev fp-utils python3"
    [headless]="xvfb openbox xdotool imagemagick"
    [test]="g++ cmake ninja-build ccache qt6-base-dev libxcb1-dev libpulse-dev libgmock-dev fonts-dejavu-core libchm-dev libxxhash-dev fp-utils python3"
    [sound]="pulseaudio pulseaudio-utils python3"
    [windows]="cmake ninja-build ccache g++-mingw-w64-x86-64-posix qt6-base-dev googletest libxxhash-dev wine wine64 fonts-dejavu-core fp-utils python3 icoutils librsvg2-bin"
    [windows-trial]="tint2"
    [windows-qt]="cmake ninja-build dpkg-dev perl xz-utils g++-mingw-w64-x86-64-posix qt6-base-dev qt6-base-dev-tools"
    [fuzz]="clang libclang-rt-14-dev cmake ninja-build ccache libchm-dev libxxhash-dev libpulse-dev"
    [package]="dpkg-dev file gzip librsvg2-bin"
    [windows-package]="nsis zip"
    [windows-package-checks]="xvfb openbox xdotool unzip gcc-mingw-w64-x86-64-posix"
    [package-checks]="lintian desktop-file-utils appstream man-db groff debootstrap xvfb xdotool iproute2"
    [checks]="g++ clang-format clang-tidy libclang-14-dev llvm-14-dev git python3"
)

Say() { printf '==> %s\n' "$*"; }

Fail() {
    printf 'error: %s\n' "$*" >&2
    exit 1
}

# Prints the folder for results that later runs and other checkouts reuse: TALLYHORN_CACHE, else tallyhorn/ in
# XDG_CACHE_HOME, else ~/.cache/tallyhorn.
CacheFolder() { realpath -m "${TALLYHORN_CACHE:-${XDG_CACHE_HOME:-$HOME/.cache}/tallyhorn}"; }

# WaitFor SECONDS COMMAND...: repeats the command until it succeeds; fails after that time.
WaitFor() {
    local end=$((SECONDS + $1))
    shift
    until "$@"; do
        ((SECONDS < end)) || return 1
        sleep 0.1
    done
}

# PortTaken PORT: succeeds if a program on this machine listens on that UDP port.
PortTaken() {
    local tables=(/proc/net/udp)
    [[ ! -e /proc/net/udp6 ]] || tables+=(/proc/net/udp6)
    awk -v port="$(printf '%04X' "$1")" 'split($2, address, ":") == 2 && address[2] == port { found = 1 }
        END { exit !found }' "${tables[@]}"
}

# MissingPackages PACKAGE...: prints those that are not installed, one per line.
MissingPackages() {
    comm -13 <(dpkg-query -W -f='${db:Status-Status} ${Package}\n' "$@" 2>/dev/null |
        sed -n 's/^installed //p' | sort -u) <(printf '%s\n' "$@" | sort -u)
}

AsRoot() {
    if ((EUID == 0)); then
        "$@"
    else
        sudo "$@"
    fi
}

# InstallPackages PACKAGE...: installs the packages.  Shows the output of apt-get only if it fails.
InstallPackages() {
    local log
    log=$(mktemp)
    AsRoot apt-get update -qq >"$log" 2>&1 || Say "apt-get update failed; using the existing package lists"
    if ! AsRoot env DEBIAN_FRONTEND=noninteractive apt-get install -qq --no-install-recommends \
        -o DPkg::Lock::Timeout=300 "$@" >>"$log" 2>&1; then
        tail -n 40 "$log" >&2
        rm -f "$log"
        Fail "apt-get could not install: $*"
    fi
    rm -f "$log"
}

# EnsurePackages TASK...: installs those packages of the tasks that are missing.
EnsurePackages() {
    local task list names=() missing
    for task in "$@"; do
        read -ra list <<<"${Packages[$task]}"
        names+=("${list[@]}")
    done
    if ! command -v dpkg-query >/dev/null; then
        Say "Not a Debian machine: assuming that the equivalents of these packages are installed: ${names[*]}"
        return
    fi
    mapfile -t missing < <(MissingPackages "${names[@]}")
    if ((${#missing[@]} == 0)); then
        return
    fi
    if ((EUID != 0)) && ! command -v sudo >/dev/null; then
        Fail "installing packages needs root or sudo; these are missing: ${missing[*]}"
    fi
    Say "Installing ${missing[*]}"
    InstallPackages "${missing[@]}"
}

# Configure PRESET: runs CMake if the preset was never configured or CMakePresets.json has changed since.  The build
# itself notices all other changes.
Configure() {
    local folder=build/$1
    if [[ $1 == windows ]]; then
        packaging/windows/build-qt.sh  # returns at once if Qt is already in the cache
        if [[ $(readlink build/qt-windows) != $(cat "$folder/.made-with" 2>/dev/null) ]]; then
            rm -rf "$folder"  # made with another Qt; Ninja compares only times, so it might not rebuild everything
            mkdir -p "$folder"
            readlink build/qt-windows >"$folder/.made-with"
        fi
    fi
    if [[ -f $folder/build.ninja && $folder/.configured -nt CMakePresets.json ]]; then
        return
    fi
    Say "Configuring the preset $1"
    mkdir -p "$folder"
    if ! cmake --preset "$1" >"$folder/configure.log" 2>&1; then
        cat "$folder/configure.log" >&2
        Fail "CMake could not configure the preset $1"
    fi
    touch "$folder/.configured"
}

# Build PRESET [TARGET...]: builds these targets, or all.
Build() {
    local preset=$1 arguments=(--preset "$1")
    shift
    Configure "$preset"
    Say "Building the preset $preset${*:+: $*}"
    if (($# > 0)); then
        arguments+=(--target "$@")
    fi
    if [[ ! -t 1 ]]; then
        arguments+=(-- --quiet)
    fi
    cmake --build "${arguments[@]}" || Fail "building the preset $preset failed"
}
