#!/bin/sh
# install_test.sh BUILD SOURCE WORK: installs BUILD into a folder below WORK, moves it, and builds and runs programs
# against the moved copy, by pkg-config and by CMake, in C and in C++, with the shared and with the static library.
#
# CC, CXX: compilers. VEXOR_LINK_FLAGS: what the library's users must be compiled and linked with. VERSION: the project's.
set -eu
build=$1 source=$2 work=$3
here=$(cd "$(dirname "$0")" && pwd)
flags=${VEXOR_LINK_FLAGS:-}
failed=0
fail() {
    echo "FAILED: $*"
    failed=1
}
# A log is of interest only if its command fails.
quietly() {
    "$@" >"$work/log" 2>&1 || { cat "$work/log"; fail "$*"; return 1; }
}

rm -rf "$work"
mkdir -p "$work"
# Paths with a space are legal.
quietly cmake --install "$build" --prefix "$work/first place"
prefix="$work/other place"
mv "$work/first place" "$prefix"

# --- What is there.
one() { find "$prefix" -path "$prefix/$1" | head -1; }
for file in include/vexor.h include/vexor_lite.h bin/vexor 'lib*/libvexor.a' 'lib*/libvexor.so' \
    'lib*/libvexor.so.?' "lib*/libvexor.so.$VERSION" 'lib*/pkgconfig/vexor.pc' 'lib*/cmake/vexor/vexor-config.cmake' \
    'lib*/cmake/vexor/vexor-config-version.cmake' 'share/man/man1/vexor.1' 'share/man/man3/vexor.3' \
    'share/man/man3/vexor_lite.3' 'share/doc/vexor/api.md' 'share/doc/vexor/language.md' 'share/doc/vexor/README.md' \
    'share/doc/vexor/examples/lite.c' 'share/doc/vexor/examples/party.cpp'; do
    [ -n "$(one "$file")" ] || fail "not installed: $file"
done
library=$(one 'lib*/libvexor.so')
libraries=$(dirname "$library")
soname=$(objdump -p "$library" | awk '$1 == "SONAME" {print $2}')
[ "$soname" = "libvexor.so.${VERSION%%.*}" ] || fail "the soname is $soname"
quietly "$source/tests/api/functions_called.sh" "$library" "$source" || true
for header in vexor.h vexor_lite.h; do
    quietly "$source/tests/api/header_alone.sh" "$prefix/include/$header" || true
done
[ "$("$prefix/bin/vexor" --version)" = "vexor $VERSION" ] || fail "the tool says $("$prefix/bin/vexor" --version)"
# Nothing installed knows where it was built or first installed.
if grep -rlF -e "$build" -e "$source" -e "first place" "$libraries/pkgconfig" "$libraries/cmake" "$prefix/include"; then
    fail "these files hold paths of the build"
fi

# --- What the programs must print. Two neighbours can have two colours, three cannot.
colours='two edges 1, three edges -1
sat'
rules='refused: [(null), line(-1), column(-1), position(-1)]: Constant "x" was already defined.
answer 1'
# run_and_compare EXPECTED PROGRAM
run_and_compare() {
    got=$("$2" 2>&1) || fail "$2 ends with code $?"
    [ "$got" = "$1" ] || fail "$2 prints: $got"
}

# --- By pkg-config.
export PKG_CONFIG_PATH="$libraries/pkgconfig"
[ "$(pkg-config --modversion vexor)" = "$VERSION" ] || fail "pkg-config says version $(pkg-config --modversion vexor)"
strict="-pedantic -Wall -Wextra -Werror"
cd "$work"
# The words of pkg-config are quoted for a shell.
by_pkg_config() {
    eval "quietly $1 $strict $flags $2 -o $work_quoted/$3 $(pkg-config --cflags $4 vexor) $(libs $4)"
}
libs() { pkg-config --libs "$@" vexor; }
work_quoted="'$work'"
run_path="-Wl,-rpath,'$libraries'"
by_pkg_config "$CC -std=c99" "'$here/consumer/colours.c' $run_path" colours_pc ""
quietly $CC -std=c99 $strict $flags -fexceptions $(pkg-config --cflags-only-other vexor) -I"$prefix/include" \
    -c "$here/consumer/rules.c" -o rules.o
by_pkg_config "$CXX -std=c++11" "'$here/consumer/rules.cpp' rules.o $run_path" rules_pc ""
run_and_compare "$colours" ./colours_pc
run_and_compare "$rules" ./rules_pc
# The archive in place of the shared library, and, as sanitizers allow no such thing, everything static without them.
libs() { pkg-config --libs "$@" vexor | sed 's/-lvexor/-l:libvexor.a/'; }
by_pkg_config "$CC -std=c99" "'$here/consumer/colours.c'" colours_archive --static
run_and_compare "$colours" ./colours_archive
if [ -z "$flags" ]; then
    libs() { pkg-config --libs "$@" vexor; }
    by_pkg_config "$CC -std=c99 -static" "'$here/consumer/colours.c'" colours_static --static
    by_pkg_config "$CXX -std=c++11 -static" "'$here/consumer/rules.cpp' rules.o" rules_static --static
    run_and_compare "$colours" ./colours_static
    run_and_compare "$rules" ./rules_static
    if ldd ./colours_archive | grep -q vexor; then fail "the static program wants the shared library"; fi
fi

# --- By CMake, with and without C++ in the user's project.
for only in OFF ON; do
    quietly cmake -S "$here/consumer" -B "cmake_$only" -DCMAKE_PREFIX_PATH="$prefix" -DC_ONLY="$only" -DVEXOR_WANTED="$VERSION" \
        -DCMAKE_C_COMPILER="$CC" -DCMAKE_CXX_COMPILER="$CXX" -DCMAKE_C_FLAGS="$flags" -DCMAKE_CXX_FLAGS="$flags" || continue
    quietly cmake --build "cmake_$only" || continue
    for kind in vexor vexor_static; do
        run_and_compare "$colours" "./cmake_$only/colours_$kind"
        [ "$only" = ON ] || run_and_compare "$rules" "./cmake_$only/rules_$kind"
    done
done
# A version that is not compatible is refused.
if cmake cmake_ON -DVEXOR_WANTED=999 >log 2>&1; then
    fail "version 999 was found"
fi
grep -q "999" log || { cat log; fail "version 999 was refused for another reason"; }
[ "$failed" = 1 ] || rm -rf "$work"
exit $failed
