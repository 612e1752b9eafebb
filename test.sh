#!/bin/sh
# SPDX-License-Identifier: GPL-3.0-or-later
# Runs every test: format, clang-tidy on what has changed, core, desktop without a screen, include rules, all with
# address and undefined-behaviour sanitizers; then a short search of the fuzzers, in a build of the other compiler and
# without the desktop's libraries.
#   --quick   the release build without sanitizers in place of the first, and no search
set -eu
cd "$(dirname "$0")"

builds="asan fuzz"
case "${1:-}" in
"") ;;
--quick) builds=release ;;
*)
    echo "usage: test.sh [--quick]" >&2
    exit 2
    ;;
esac

step() { printf '\n== %s\n' "$1"; }

tools/install_packages.sh

step "format"
find src tests bench -name '*.h' -o -name '*.cpp' | sort | xargs clang-format-14 --dry-run -Werror

step "clang-tidy"
tools/tidy.sh

jobs=$(nproc)
export QT_QPA_PLATFORM=offscreen
# The toolkit's plugins and the font library keep memory until the end; their leaks are not ours.
export LSAN_OPTIONS="suppressions=$PWD/tools/lsan.supp:print_suppressions=0"
for build in $builds; do
    step "build $build"
    cmake --preset "$build"
    cmake --build --preset "$build"
    step "test $build"
    ctest --preset "$build" -j "$jobs"
done
step "all tests passed"
