#!/bin/sh
# package_test.sh BUILD WORK: cpack makes a Debian package that holds what an installation holds, and nothing that must
# not be in one. It is unpacked, not installed. VERSION: the project's.
set -eu
build=$1 work=$2
command -v dpkg-deb >/dev/null 2>&1 || { echo "no dpkg-deb: no package was made"; exit 77; }
failed=0
fail() {
    echo "FAILED: $*"
    failed=1
}
rm -rf "$work"
mkdir -p "$work/installed"
# Folders get the mode that the umask leaves. Speed matters more than size here.
umask 022
(cd "$build" && cpack -G DEB -B "$work/made" -D CPACK_DEBIAN_COMPRESSION_TYPE=gzip) >"$work/log" 2>&1 ||
    { cat "$work/log"; exit 1; }
package=$(find "$work/made" -maxdepth 1 -name "vexor_${VERSION}_*.deb")
[ -n "$package" ] || { cat "$work/log"; echo "FAILED: no package"; exit 1; }
dpkg-deb -x "$package" "$work/unpacked"
cmake --install "$build" --prefix "$work/installed/usr" >/dev/null

files() { (cd "$1" && find . ! -type d | LC_ALL=C sort); }
files "$work/installed" >"$work/installed.txt"
files "$work/unpacked" >"$work/unpacked.txt"
diff "$work/installed.txt" "$work/unpacked.txt" || fail "the package (right) and an installation (left) differ"
field() { dpkg-deb -f "$package" "$1"; }
[ "$(field Package)" = vexor ] || fail "package $(field Package)"
[ "$(field Version)" = "$VERSION" ] || fail "version $(field Version)"
[ -n "$(field Description)" ] && [ -n "$(field Section)" ] || fail "no description or section"
case $(field Maintainer) in "" | *@*) fail "maintainer $(field Maintainer)" ;; esac
field Depends | grep -q libgmp10 || fail "depends on $(field Depends)"
field Depends | grep -q libc6 || fail "depends on $(field Depends)"
find "$work/unpacked/usr" -type d ! -perm 755 | grep . && fail "these folders cannot be read by all"
find "$work/unpacked" -perm /022 ! -type l | grep . && fail "these files can be written by others"
"$work/unpacked/usr/bin/vexor" --version >/dev/null || fail "the tool does not run"
[ "$failed" = 1 ] || rm -rf "$work"
exit $failed
