#!/bin/sh
# SPDX-License-Identifier: GPL-3.0-or-later
# Makes the pictures of docs/screenshots anew: starts the built program on a screen of its own, drives it by keys and
# takes its windows. Needs a release build, and xvfb, openbox, xdotool, xclip and imagemagick.
set -eu
cd "$(dirname "$0")/.."

for tool in Xvfb openbox xdotool xclip import convert; do
    command -v "$tool" >/dev/null || {
        echo "This needs $tool: apt-get install xvfb openbox xdotool xclip imagemagick" >&2
        exit 1
    }
done
batch=build/release/src/batch/velt-batch
out=docs/screenshots
work=$(mktemp -d)
pids=""
end() {
    # shellcheck disable=SC2086 # a list of words
    kill $pids 2>/dev/null || true
    rm -rf "$work"
}
trap end EXIT INT TERM

# Projects with one logged fit each, and pictures of one of them.
fit() {
    QT_QPA_PLATFORM=offscreen "$batch" fit "$@" --bootstraps 500 --seed 1 >/dev/null
}
fit --data samples/albacore_south_atlantic.txt --time-column Year --model schaefer --error log \
    --columns "Tot_Catch_wt=Tot. Catch Wt,Abund_Index=Abundance Index" --contours 80 \
    --csv "$work" --plots "$work/plots" --log-as Schaefer --project "$work/albacore.vl3"
fit --data samples/smallmouth_bass.txt --time-column Period --model no-recruitment --m 0 \
    --columns "Tot_Catch_Nums=Tot. Catch Nums,Effort_=Effort" --log-as Leslie --project "$work/bass.vl3"
cp "$work"/plots/*-contours.png "$out/contours.png"
cp "$work"/plots/*-k-*.png "$out/histogram.png"

export DISPLAY=:87 QT_QPA_PLATFORM=xcb XDG_CONFIG_HOME="$work/config" TMPDIR="$work"
Xvfb :87 -screen 0 1920x1080x24 >/dev/null 2>&1 &
pids="$!"
sleep 1
openbox >/dev/null 2>&1 &
pids="$pids $!"
sleep 1

press() {
    for key in "$@"; do
        xdotool key "$key"
        sleep 0.4
    done
}
front() { # the window with this title
    xdotool windowactivate --sync "$(xdotool search --name "$1" | tail -n 1)"
    sleep 0.5
}
shot() { # of the window in front, with its frame
    import -frame -window "$(xdotool getactivewindow)" "$out/$1.png"
}
open_fit() { # the first logged fit of a project, as a user opens it
    build/release/src/shell/velt "$1" >/dev/null 2>&1 &
    program=$!
    pids="$pids $program"
    sleep 3
    press alt+i Up Return
    sleep 1
    press Return
    sleep 3
}

# Table, report and graphs beside one another.
open_fit "$work/bass.vl3"
import -window root "$work/main.png"
convert "$work/main.png" -resize 75% "$out/main.png"
kill -9 "$program"
sleep 1
rm -rf "$work"/velt-project-*

# A graph and what can be changed of it.
open_fit "$work/albacore.vl3"
front "Expected and Observed CPUE"
press Menu Down Return
sleep 1
shot edit-graph
press Escape

# All graphs and the report on one page.
front "^VELT 3.0 - "
press alt+g o
sleep 2
shot overview

# Scenarios and their projection: no fishing, and once and twice the effort of the data.
front "^VELT 3.0 - "
press alt+p Return
sleep 1
for _ in 1 2 3 4 5 6 7 8 9 10; do printf '0\t1\t2\r\n'; done | xclip -selection clipboard
press ctrl+v
sleep 1
shot scenarios
front "^VELT 3.0 - "
press alt+p p
sleep 1
press Tab Tab space Return # all scenarios
sleep 2
front "Projection #"
shot projection
