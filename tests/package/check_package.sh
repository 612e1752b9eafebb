#!/bin/sh
# SPDX-License-Identifier: GPL-3.0-or-later
# Makes the package and looks at it as a user's machine would: what it holds and asks for; installed, that velt-batch
# fits a sample and that the desktop opens its manual; removed, that nothing stays. As root it is really installed,
# unless it is installed already; otherwise, or with --unpack, it is unpacked into a folder and run from there.
set -eu
cd "$(dirname "$0")/../.."

say() { printf '== %s\n' "$1"; }
fail() { echo "FAILED: $1" >&2; exit 1; }

work=$(mktemp -d)
installed=no
finish() {
    [ "$installed" = no ] || dpkg --purge velt3 >/dev/null 2>&1 || true
    rm -rf "$work"
}
trap finish EXIT

say "make it"
package=$(tools/package.sh "$work")
cmake --build build/release --target velt_package_driver >"$work/driver.log" 2>&1 || { cat "$work/driver.log"; exit 1; }
driver=$PWD/build/release/tests/package/libvelt_package_driver.so

say "what it says of itself"
field() { dpkg-deb --field "$package" "$1"; }
[ "$(field Package)" = velt3 ] || fail "its name is $(field Package)"
[ "$(field Section)" = science ] || fail "its section is $(field Section)"
[ "$(field Maintainer)" = "VELT developers <velt@example.org>" ] || fail "its maintainer is $(field Maintainer)"
for wanted in libqt6help6 libqt6widgets6 libc6 libqt6sql6-sqlite qt6-qpa-plugins; do
    field Depends | grep -q "$wanted" || fail "it does not ask for $wanted"
done

say "what it holds"
dpkg-deb --fsys-tarfile "$package" | tar -t | sed 's|^\./|/|' >"$work/list"
for file in bin/velt bin/velt-batch share/velt3/help/velt.qch share/velt3/help/contexts.txt \
    share/velt3/samples/smallmouth_bass.txt share/man/man1/velt.1 share/man/man1/velt-batch.1 \
    share/applications/org.velt.Velt.desktop share/metainfo/org.velt.Velt.metainfo.xml \
    share/icons/hicolor/scalable/apps/org.velt.Velt.svg \
    share/icons/hicolor/scalable/mimetypes/application-x-velt-project.svg \
    share/mime/packages/org.velt.Velt.xml share/doc/velt3/copyright; do
    grep -qx "/usr/$file" "$work/list" || fail "there is no /usr/$file"
done
if grep -v -e '^/$' -e '^/usr/' "$work/list" | grep .; then fail "it holds files outside /usr"; fi
dpkg-deb --contents "$package" | awk '$2 != "root/root" { print; bad = 1 } END { exit bad }' || fail "not root's files"

if [ "${1:-}" != --unpack ] && [ "$(id -u)" -eq 0 ] && ! dpkg -s velt3 >/dev/null 2>&1; then
    say "install it"
    installed=yes
    dpkg --install "$package" >"$work/dpkg.log" 2>&1 || { cat "$work/dpkg.log"; fail "it does not install"; }
    usr=/usr
else
    say "unpack it"
    dpkg-deb --extract "$package" "$work/root"
    usr=$work/root/usr
fi

say "velt-batch"
"$usr/bin/velt-batch" --version | grep -q 3.0 || fail "velt-batch does not say its version"
"$usr/bin/velt-batch" fit --data "$usr/share/velt3/samples/smallmouth_bass.txt" --time-column Period \
    --columns "Tot_Catch_Nums=Tot. Catch Nums,Effort_=Effort" --model no-recruitment --m 0 >"$work/report"
grep -q N1 "$work/report" || fail "no estimate of the sample"

say "the desktop, a project and the manual"
cp tests/samples/projects/minimal.vl3 "$work/stock.vl3"
mkdir "$work/home" "$work/runtime"
chmod 700 "$work/runtime"
(cd / && env -i PATH="$PATH" HOME="$work/home" TMPDIR="$work" XDG_RUNTIME_DIR="$work/runtime" LC_ALL=C.UTF-8 \
    QT_QPA_PLATFORM=offscreen LD_PRELOAD="$driver" timeout 60 "$usr/bin/velt" "$work/stock.vl3") >"$work/seen" 2>"$work/said" ||
    { cat "$work/seen" "$work/said"; fail "the desktop did not end well"; }
grep -qx 'page: qthelp://org.velt.manual/manual/index.html' "$work/seen" || { cat "$work/seen"; fail "no manual"; }
grep -qx 'icon: drawn' "$work/seen" || { cat "$work/seen"; fail "the window has no icon"; }
grep -q '^title: VELT 3.0 - stock.vl3 - ' "$work/seen" || { cat "$work/seen"; fail "the project is not open"; }
if find "$work/home" -name 'velt-help-*' | grep .; then fail "the manual left files in the cache"; fi

if [ "$installed" = yes ]; then
    say "remove it"
    dpkg --purge velt3 >"$work/dpkg.log" 2>&1 || { cat "$work/dpkg.log"; fail "it cannot be removed"; }
    installed=no
    ! dpkg -s velt3 >/dev/null 2>&1 || fail "it is still known"
    while read -r path; do
        case $path in
        */velt3/* | */bin/velt* | *org.velt.* | */velt.1* | */velt-batch.1* | *x-velt-project*)
            [ ! -e "$path" ] || fail "$path is still there"
            ;;
        esac
    done <"$work/list"
fi
say "the package is sound"
