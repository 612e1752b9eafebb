#!/bin/sh
# SPDX-License-Identifier: GPL-3.0-or-later
# clang-tidy with the checks of .clang-tidy, all of them errors.
#   tools/tidy.sh           the sources changed since the last commit of the main branch on the server; where that
#                           is this very commit or not known, those of the last commit
#   tools/tidy.sh --all     all of src (a quarter of an hour on two cores)
set -eu
cd "$(dirname "$0")/.."

build=build/tidy # commands without precompiled headers, which are g++'s and not clang's
cmake --preset asan -B "$build" -DCMAKE_DISABLE_PRECOMPILE_HEADERS=ON >/dev/null

since() {
    base=$(git merge-base HEAD origin/main 2>/dev/null || true)
    [ "$base" != "$(git rev-parse HEAD)" ] || base=""
    git rev-parse --verify --quiet "${base:-HEAD~1}" || true
}

case "${1:-}" in
--all) files=$(find src -name '*.cpp' | sort) ;;
"")
    base=$(since)
    files=""
    if [ -n "$base" ]; then
        # A header is checked through the source of its name.
        files=$(git diff --name-only --diff-filter=d "$base" -- src | sed 's/\.h$/.cpp/' | grep '\.cpp$' | sort -u |
            while read -r file; do [ ! -f "$file" ] || echo "$file"; done)
    fi
    ;;
*)
    echo "usage: tidy.sh [--all]" >&2
    exit 2
    ;;
esac
# What this build leaves out has no command.
files=$(for file in $files; do ! grep -q "$PWD/$file\"" "$build/compile_commands.json" || echo "$file"; done)
[ -n "$files" ] || { echo "no source has changed"; exit 0; }
# shellcheck disable=SC2016,SC2086 # the inner shell's own words; a list of words
printf '%s\n' $files | xargs -P "$(nproc)" -n 1 sh -c '
    said=$(clang-tidy-14 --quiet -p "$0" "$1" 2>&1) || { echo "$said" | grep -v "warnings generated"; exit 1; }' "$build"
echo "clean: $(printf '%s\n' "$files" | wc -l) sources"
