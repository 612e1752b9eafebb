#!/bin/sh
# SPDX-License-Identifier: GPL-3.0-or-later
# Installs the Debian packages that building and testing need and that are missing. Does nothing, and asks for
# no rights, when all are there.
set -eu

packages="g++ cmake ninja-build ccache git python3 clang-format-14 clang-tidy-14 clang-14 libclang-rt-14-dev
qt6-base-dev qt6-svg-dev qt6-tools-dev qt6-tools-dev-tools qt6-documentation-tools libqt6sql6-sqlite
libgl1-mesa-dev qt6-qpa-plugins libqcustomplot-dev libqcustomplot2.1-qt6
libcli11-dev nlohmann-json3-dev libgtest-dev libbenchmark-dev fonts-dejavu-core poppler-utils
desktop-file-utils appstream shared-mime-info libglib2.0-bin dpkg-dev"

if ! command -v apt-get >/dev/null; then
    echo "This system has no apt-get; see CONTRIBUTING.md for what must be installed." >&2
    exit 0
fi

installed() {
    dpkg-query -W -f='${db:Status-Status}\n' "$1" 2>/dev/null | grep -qx installed
}

missing=""
for package in $packages; do
    installed "$package" || missing="$missing $package"
done
[ -n "$missing" ] || exit 0

as_root=""
if [ "$(id -u)" -ne 0 ]; then
    as_root=sudo
    command -v sudo >/dev/null || { echo "Please install as root:$missing" >&2; exit 1; }
fi
echo "Installing:$missing" >&2
export DEBIAN_FRONTEND=noninteractive
$as_root apt-get update -qq >/dev/null
# shellcheck disable=SC2086 # a list of words
$as_root apt-get install -y -qq --no-install-recommends $missing >/dev/null
