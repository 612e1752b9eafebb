#!/bin/sh
# SPDX-License-Identifier: GPL-3.0-or-later
# Makes the package for Debian and Ubuntu, velt3_<version>_<architecture>.deb, from a release build. Its place is the
# last line that is printed.
#   package.sh [folder]    where it goes; out/ without one
set -eu
cd "$(dirname "$0")/.."
folder=${1:-out}
mkdir -p "$folder" build
folder=$(cd "$folder" && pwd)

log=build/package.log
if ! {
    cmake --preset release &&
        cmake --build --preset release --target velt velt-batch manual &&
        cpack --config build/release/CPackConfig.cmake -G DEB -B "$folder"
} >"$log" 2>&1; then
    tail -n 40 "$log" >&2
    echo "No package was made; all of it stands in $log." >&2
    exit 1
fi
rm -rf "$folder/_CPack_Packages"
ls -t "$folder"/velt3_*.deb | head -n 1
