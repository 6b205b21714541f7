# shellcheck shell=bash
# What run.sh, test.sh and the steps of .ci/ share: the packages that each task needs, and how a
# preset is configured and built.  To be sourced with the repository's root as current folder.

# Debian's packages, by task.
declare -A Packages=(
    [run]="g++ cmake ninja-build ccache qt6-base-dev libxcb1-dev libpulse-dev libgmock-dev libbenchmark-dev fonts-dejavu-core libchm-dev fp-utils python3"
    [headless]="xvfb openbox xdotool imagemagick"
    [test]="g++ cmake ninja-build ccache qt6-base-dev libxcb1-dev libpulse-dev libgmock-dev fonts-dejavu-core libchm-dev fp-utils python3"
    [sound]="pulseaudio pulseaudio-utils python3"
    [windows]="cmake ninja-build ccache g++-mingw-w64-x86-64-posix qt6-base-dev googletest wine wine64 fonts-dejavu-core fp-utils python3 icoutils librsvg2-bin"
    [windows-trial]="tint2"
    [windows-qt]="cmake ninja-build dpkg-dev perl xz-utils g++-mingw-w64-x86-64-posix qt6-base-dev qt6-base-dev-tools"
    [fuzz]="clang libclang-rt-14-dev cmake ninja-build ccache libchm-dev libpulse-dev"
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

# WaitFor SECONDS COMMAND...: false when the command has not succeeded within that time.
WaitFor() {
    local end=$((SECONDS + $1))
    shift
    until "$@"; do
        ((SECONDS < end)) || return 1
        sleep 0.1
    done
}

# PortTaken PORT: whether a program of this machine listens there by UDP.
PortTaken() {
    local tables=(/proc/net/udp)
    [[ ! -e /proc/net/udp6 ]] || tables+=(/proc/net/udp6)
    awk -v port="$(printf '%04X' "$1")" 'split($2, address, ":") == 2 && address[2] == port { found = 1 }
        END { exit !found }' "${tables[@]}"
}

# MissingPackages PACKAGE...: those that are not installed, one a line.
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

# InstallPackages PACKAGE...: what apt-get says is shown only when it fails.
InstallPackages() {
    local log
    log=$(mktemp)
    AsRoot apt-get update -qq >"$log" 2>&1 || Say "apt-get update failed; going on with the lists at hand"
    if ! AsRoot env DEBIAN_FRONTEND=noninteractive apt-get install -qq --no-install-recommends \
        -o DPkg::Lock::Timeout=300 "$@" >>"$log" 2>&1; then
        tail -n 40 "$log" >&2
        rm -f "$log"
        Fail "apt-get could not install: $*"
    fi
    rm -f "$log"
}

# EnsurePackages TASK...: installs what the tasks need and the machine lacks.
EnsurePackages() {
    local task list names=() missing
    for task in "$@"; do
        read -ra list <<<"${Packages[$task]}"
        names+=("${list[@]}")
    done
    if ! command -v dpkg-query >/dev/null; then
        Say "Not a Debian machine: taking it that it has the equivalents of ${names[*]}"
        return
    fi
    mapfile -t missing < <(MissingPackages "${names[@]}")
    if ((${#missing[@]} == 0)); then
        return
    fi
    if ((EUID != 0)) && ! command -v sudo >/dev/null; then
        Fail "neither root nor sudo: have these packages installed first: ${missing[*]}"
    fi
    Say "Installing ${missing[*]}"
    InstallPackages "${missing[@]}"
}

# Configure PRESET: only when it never was, or when the presets have changed since; the build
# itself notices everything else.
Configure() {
    local folder=build/$1
    if [[ $1 == windows ]]; then
        packaging/windows/build-qt.sh  # at once where that Qt is there
        if [[ $(readlink build/qt-windows) != $(cat "$folder/.made-with" 2>/dev/null) ]]; then
            rm -rf "$folder"  # made with another: the times of its headers tell nobody
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
        Fail "the preset $1 could not be configured"
    fi
    touch "$folder/.configured"
}

# Build PRESET [TARGET...]: every target when none is named.
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
    cmake --build "${arguments[@]}" || Fail "the preset $preset does not build"
}
