#!/usr/bin/env bash
# Builds the CMake preset "windows", makes the zip file and the installer from it in build/package-windows/, and puts
# the stripped programs beside them.  Works on a fresh Debian 12.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
source scripts/common.sh

readonly here=packaging/windows built=build/windows result=build/package-windows
readonly files=$result/files  # the files that both the zip file and the installer contain

# Text FROM TO: copies a text, inserts the versions and converts it to the line ends of Windows.
Text() { sed "s/@version@/$version/g; s/@qt@/$qt/g; s/\r*\$/\r/" "$1" >"$2"; }

# Copies the notices of all libraries in the programs, and the licence texts that they refer to.
CollectLicences() {
    local doc=/usr/share/doc name file
    local -A notices=([Qt]=build/qt-windows/licences/copyright [mingw-w64]=$doc/mingw-w64-x86-64-dev/copyright
        [GCC]=$doc/gcc-mingw-w64-base/copyright [NSIS]=$doc/nsis/copyright
        [xxHash]=$doc/libxxhash-dev/copyright)
    for name in "${!notices[@]}"; do
        file=${notices[$name]}
        [[ -f $file ]] || Fail "$file is missing; the packages must not be distributed without it"
        Text "$file" "$files/licences/$name.txt"
    done
    for name in GPL-2 GPL-3 LGPL-2 LGPL-2.1 LGPL-3 GFDL-1.3 Apache-2.0; do
        Text "/usr/share/common-licenses/$name" "$files/licences/$name.txt"
    done
    Text "$here/NOTICE.txt" "$files/licences/NOTICE.txt"
}

CollectFiles() {
    local program
    mkdir -p "$files/licences"
    for program in tallyhorn-console tallyhorn-send; do
        x86_64-w64-mingw32-strip -o "$files/$program.exe" "$built/bin/$program.exe"
    done
    cp "$built/bin/THListen.CHM" "$files/"
    Text "$here/README.txt" "$files/README.txt"
    Text "$here/starter-settings.ini" "$result/starter-settings.ini"
    CollectLicences
}

# The zip file also contains start.cmd and the settings file that start.cmd copies; the installer itself writes the
# settings file.
MakeZip() {
    local folder=tallyhorn-console-$version-windows
    cp -r "$files" "$result/$folder"
    cp "$result/starter-settings.ini" "$result/$folder/"
    Text "$here/start.cmd" "$result/$folder/start.cmd"
    (cd "$result" && find "$folder" | sort | zip -q -9 -X "$folder.zip" -@)
    rm -r "${result:?}/$folder"
}

# Prints the macros InstallFiles and RemoveFiles for installer.nsi, which install and remove the files in $files.
ListFiles() {
    local folder file
    echo '!macro InstallFiles'
    while read -r folder; do
        # shellcheck disable=SC2016  # the installer expands $INSTDIR
        printf '  SetOutPath "$INSTDIR%s"\n' "${folder:+\\$folder}"
        find "$files/$folder" -maxdepth 1 -type f -printf '  File "%p"\n' | sort
    done < <(find "$files" -type d -printf '%P\n' | sort)
    printf '!macroend\n!macro RemoveFiles\n'
    while read -r file; do
        # shellcheck disable=SC2016
        printf '  Delete "$INSTDIR\\%s"\n' "${file//\//\\}"
    done < <(find "$files" -type f -printf '%P\n' | sort)
    # shellcheck disable=SC2016
    find "$files" -mindepth 1 -type d -printf '%P\n' | sort -r | sed 's|.*|  RMDir "$INSTDIR\\&"|; s|/|\\|g'
    echo '!macroend'
}

MakeInstaller() {
    ListFiles >"$result/files.nsh"
    makensis -V2 -WX -NOCD -Dversion="$version" -Dicon="$built/packaging/windows/console.ico" \
        -Dfolder="$result" -Dsize="$(du -sk --apparent-size "$files" | cut -f 1)" "$here/installer.nsi" ||
        Fail "makensis could not build the installer"
}

EnsurePackages windows windows-package
Build windows tallyhorn-console tallyhorn-send help-file
version=$(sed -n 's/^CMAKE_PROJECT_VERSION:STATIC=//p' "$built/CMakeCache.txt")
qt=$(<build/qt-windows/licences/version)
rm -rf "$result"
CollectFiles
MakeZip
MakeInstaller
mv "$files"/*.exe "$result/"
rm -r "$files" "$result/files.nsh" "$result/starter-settings.ini"
Say "The packages are:"
printf '    %s\n' "$result"/*
