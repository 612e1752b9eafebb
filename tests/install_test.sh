#!/bin/sh
# SPDX-License-Identifier: GPL-3.0-or-later
# What an installation holds: every program that was built, running from its new place, and the manual page.
#   install_test.sh <build folder> <cmake> [program]...
set -eu
build=$1
cmake=$2
shift 2
place=$(mktemp -d)
trap 'rm -rf "$place"' EXIT
"$cmake" --install "$build" --prefix "$place" >/dev/null
for program in "$@"; do
    [ -x "$place/bin/$program" ] || { echo "$program is not installed"; exit 1; }
done
"$place/bin/velt-batch" fit --help | grep -q -- --bootstraps
[ -s "$place/share/man/man1/velt-batch.1" ] || { echo "the manual page is not installed"; exit 1; }
