#!/bin/sh
# run_page.sh PAGE NUMBER LIBRARY HEADERS WORK: takes the programs from a page, compiles and runs them in the folder
# WORK, and compares with what the page says. There must be NUMBER of them.
#
# A block ```c or ```cpp is a source file. A block ```text closes a program: the source files before it, since the last such
# block, are compiled and linked together, and print its lines. CC, CXX: compilers. VEXOR_LINK_FLAGS: what users of the
# library must be compiled and linked with.
set -eu
page=$1 number=$2 library=$3 headers=$4 work=$5
flags="${VEXOR_LINK_FLAGS:-} -pedantic -Wall -Wextra -Werror -I$headers"
libraries=$(dirname "$library")
rm -rf "$work"
mkdir -p "$work"
cd "$work"
# Each program in a folder of its own: program_1/part_1.c, ..., program_1/expected.
awk '
    /^```/ && !inside {
        inside = 1
        kind = substr($0, 4)
        if (kind == "c" || kind == "cpp") file = sprintf("program_%d/part_%d.%s", program + 1, ++part, kind)
        else if (kind == "text" && part > 0) file = sprintf("program_%d/expected", program + 1)
        else file = ""
        if (part == 1 && kind != "text") system("mkdir -p " sprintf("program_%d", program + 1))
        if (file != "") printf "" > file
        next
    }
    /^```/ {
        inside = 0
        if (kind == "text" && part > 0) { ++program; part = 0 }
        next
    }
    inside && file != "" { print > file }
    END { if (inside || part > 0) { print "the last program has no output"; exit 1 } }
' "$page"

failed=0
found=0
for folder in program_*; do
    found=$((found + 1))
    (
        cd "$folder"
        for source in part_*; do
            case $source in
                *.cpp) ${CXX:-c++} -std=c++11 $flags -c "$source" ;;
                *) ${CC:-cc} -std=c99 -fexceptions $flags -c "$source" ;;
            esac || exit 1
        done
        ${CXX:-c++} $flags part_*.o -o program -L"$libraries" -lvexor -Wl,-rpath,"$libraries" || exit 1
        code=0
        ./program >output || code=$?
        [ "$code" = 0 ] || { echo "ends with code $code"; exit 1; }
        # Blank lines at the end do not show on the page.
        [ "$(cat output)" = "$(cat expected)" ] || { diff output expected || true; exit 1; }
    ) || { echo "FAILED: $folder of $page"; failed=1; }
done
[ "$found" = "$number" ] || { echo "$found programs in $page, not $number"; failed=1; }
exit $failed
