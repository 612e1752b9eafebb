#!/bin/sh
# SPDX-License-Identifier: GPL-3.0-or-later
# Builds VELT and starts it. Without a display it fits a bundled data set instead: the report on the terminal,
# the graphs as PNG and SVG under out/.
set -eu
cd "$(dirname "$0")"

tools/install_packages.sh
mkdir -p build
echo "Building; the first time this takes some minutes (its messages go to build/run.log)." >&2
if ! { cmake --preset release && cmake --build --preset release --target velt velt-batch; } >build/run.log 2>&1; then
    tail -n 40 build/run.log >&2
    echo "The build failed; all of it stands in build/run.log." >&2
    exit 1
fi

if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
    exec build/release/src/shell/velt "$@"
fi

build/release/src/batch/velt-batch fit --data samples/albacore_south_atlantic.txt --time-column Year \
    --columns "Tot_Catch_wt=Tot. Catch Wt,Abund_Index=Abundance Index" --model schaefer --error log --plots out
echo
echo "No display: this was velt-batch on samples/albacore_south_atlantic.txt. Graphs:"
ls out/*.png
