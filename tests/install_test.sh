#!/bin/sh
# SPDX-License-Identifier: GPL-3.0-or-later
# What an installation holds: every program that was built, running from its new place, and the manual page; with the
# desktop also its manual, and what the system learns of program and file type, each checked by the system's own tool.
#   install_test.sh <build folder> <cmake> [program]...
set -eu
build=$1
cmake=$2
shift 2
place=$(mktemp -d)
trap 'rm -rf "$place"' EXIT
"$cmake" --install "$build" --prefix "$place" >/dev/null
held() { [ -s "$place/share/$1" ] || { echo "$1 is not installed"; exit 1; }; }
for program in "$@"; do
    [ -x "$place/bin/$program" ] || { echo "$program is not installed"; exit 1; }
    held "man/man1/$program.1"
done
"$place/bin/velt-batch" fit --help | grep -q -- --bootstraps
held velt3/samples/smallmouth_bass.txt
[ -x "$place/bin/velt" ] || exit 0

held velt3/help/velt.qch
held velt3/help/contexts.txt
desktop-file-validate "$place/share/applications/org.velt.Velt.desktop"
appstreamcli validate --no-net "$place/share/metainfo/org.velt.Velt.metainfo.xml" >"$place/said" ||
    { cat "$place/said"; exit 1; }
icon=$(sed -n 's/^Icon=//p' "$place/share/applications/org.velt.Velt.desktop")
held "icons/hicolor/scalable/apps/$icon.svg"
held icons/hicolor/scalable/mimetypes/application-x-velt-project.svg

# A project is known by its bytes under any name, and by its name.
update-mime-database "$place/share/mime" >/dev/null 2>&1 # says that the system does not look there
samples=$(cd "$(dirname "$0")/samples/projects" && pwd)
project=$(find "$samples" -name '*.vl3' | sort | head -n 1)
cp "$project" "$place/stock"
echo damaged >"$place/named.vl3"
for file in stock named.vl3; do
    kind=$(XDG_DATA_HOME=$place/share XDG_DATA_DIRS=/nowhere gio info -a standard::content-type "$place/$file" |
        sed -n 's/.*content-type: //p')
    [ "$kind" = application/x-velt-project ] || { echo "$file is taken for $kind"; exit 1; }
done
