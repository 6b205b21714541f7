#!/usr/bin/env bash
# Cross-builds the static Qt (Core, Gui, Widgets and Test) for the console's Windows build, from Debian's source package
# and with Debian's compiler.  This takes about twenty minutes on two cores, but only once: the result is kept in the
# user's cache folder (CacheFolder in scripts/common.sh) under a hash of everything that affects it.  build/qt-windows is
# a link to that result.
set -euo pipefail
shopt -s inherit_errexit
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
source scripts/common.sh

readonly link=build/qt-windows toolchain=cmake/mingw.cmake
cache=$(CacheFolder)
work=""
builder=""  # the process that builds Qt; also the id of its process group

# Modules and features that the console does not use.  tabletevent is in this list because Debian's source lacks a header
# that it needs.  direct2d must stay: the font code of the Windows platform plug-in needs it.
readonly without=(sql dbus xml concurrent printsupport network androiddeployqt
    vulkan direct2d1_1 tabletevent ssl zstd icu glib jpeg textmarkdownreader textmarkdownwriter)
readonly bundled=(zlib pcre2 doubleconversion png freetype harfbuzz)

Version() { dpkg-query -W -f='${source:Version}' "$1"; }

# Prints everything that affects the result: versions, options, build functions, toolchain file.
Recipe() {
    local package
    for package in qt6-base-dev g++-mingw-w64-x86-64-posix mingw-w64-x86-64-dev binutils-mingw-w64-x86-64; do
        Version "$package"
    done
    declare -p without bundled
    declare -f FetchSource ConfigureQt BuildQt
    cat "$toolchain"
}

# SourceLists FOLDER: copies this machine's lists of package sources to the folder, changed from binary to source
# packages.
SourceLists() {
    mkdir -p "$1"
    local list
    for list in /etc/apt/sources.list.d/*.sources; do
        [[ ! -e $list ]] || sed 's/^Types:.*/Types: deb-src/' "$list" >"$1/${list##*/}"
    done
    for list in /etc/apt/sources.list /etc/apt/sources.list.d/*.list; do
        [[ ! -e $list ]] || sed -n 's/^deb /deb-src /p' "$list" >"$1/$(basename "$list" .list).list"
    done
}

# Unpacks into $work/source the Qt source of the same version as the installed generators (moc, rcc).  Leaves the
# package lists of the machine unchanged.
FetchSource() {
    local apt=$work/apt
    SourceLists "$apt/parts"
    mkdir -p "$apt/lists/partial" "$apt/cache/archives/partial" "$work/fetched"
    local options=(-qq -o Dir::Etc::sourcelist=/dev/null -o "Dir::Etc::sourceparts=$apt/parts"
        -o "Dir::State::lists=$apt/lists" -o "Dir::Cache=$apt/cache" -o APT::Sandbox::User="$(id -un)")
    apt-get "${options[@]}" update
    (cd "$work/fetched" && apt-get "${options[@]}" source --download-only "qt6-base=$(Version qt6-base-dev)")
    dpkg-source --no-check -x "$work"/fetched/qt6-base_*.dsc "$work/source"
}

ConfigureQt() {
    local options=() name
    for name in "${without[@]}"; do
        options+=("-DFEATURE_$name=OFF")
    done
    for name in "${bundled[@]}"; do
        options+=("-DFEATURE_system_$name=OFF")
    done
    if command -v ccache >/dev/null; then
        options+=(-DCMAKE_C_COMPILER_LAUNCHER=ccache -DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
    fi
    cmake -G Ninja -S "$work/source" -B "$work/build" -DCMAKE_TOOLCHAIN_FILE="$PWD/$toolchain" \
        -DCMAKE_INSTALL_PREFIX="$work/qt" -DCMAKE_BUILD_TYPE=Release -DBUILD_SHARED_LIBS=OFF \
        -DQT_HOST_PATH=/usr -DQT_HOST_PATH_CMAKE_DIR="/usr/lib/$(dpkg-architecture -qDEB_HOST_MULTIARCH)/cmake" \
        -DQT_QMAKE_TARGET_MKSPEC=win32-g++ -DQT_QMAKE_DEVICE_OPTIONS=CROSS_COMPILE=x86_64-w64-mingw32- \
        -DQT_BUILD_EXAMPLES=OFF -DQT_BUILD_TESTS=OFF -DFEATURE_pkg_config=OFF \
        -DINPUT_opengl=no -DINPUT_openssl=no -DINPUT_ssl=no "${options[@]}"
}

BuildQt() {
    FetchSource
    ConfigureQt
    cmake --build "$work/build"
    cmake --install "$work/build"
    find "$work/qt" -name '*.prl' -delete  # they name this folder, and serve another build system
    # What has to travel with a program that holds this code.
    mkdir -p "$work/qt/licences"
    cp "$work/source/debian/copyright" "$work/qt/licences/"
    Version qt6-base-dev >"$work/qt/licences/version"
}

CleanUp() {
    if [[ -n $builder ]]; then
        kill -- "-$builder" 2>/dev/null || true
        wait "$builder" 2>/dev/null || true
    fi
    [[ -z $work ]] || rm -rf "$work"
}

# Builds Qt.  If another process is already building it, waits for that process and uses its result.
MakeQt() {
    mkdir -p "$cache"
    exec 9>"$qt.lock"
    if ! flock --nonblock 9; then
        Say "Waiting for another process that builds Qt for Windows"
        flock 9
    fi
    if [[ -d $qt ]]; then
        return
    fi
    trap CleanUp EXIT
    trap 'exit 130' INT TERM HUP
    work=$qt.building
    rm -rf "$work"  # may be left from a crash
    mkdir "$work"
    Say "Building Qt for Windows (once, about twenty minutes)"
    # set -m gives the job its own process group, which CleanUp can end as a whole.
    set -m
    BuildQt >"$qt.log" 2>&1 9>&- </dev/null &
    builder=$!
    set +m
    if ! wait "$builder"; then
        tail -n 40 "$qt.log" >&2
        Fail "Qt could not be built; see $qt.log"
    fi
    mv "$work/qt" "$qt"
}

EnsurePackages windows-qt
hash=$(Recipe | sha256sum)
qt=$cache/qt-windows-${hash:0:16}
[[ -d $qt ]] || MakeQt
mkdir -p build
[[ -L $link ]] || rm -rf "$link"
ln -sfnT "$qt" "$link"
