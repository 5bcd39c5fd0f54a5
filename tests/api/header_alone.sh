#!/bin/sh
# header_alone.sh HEADER: the header compiles without any other, as C99 and as C++, without a warning; also with
# the functions that take GMP's numbers.
set -eu
header=$1
warnings="-pedantic -Wall -Wextra -Werror"
failed=0
try() {
    command -v "$1" >/dev/null 2>&1 || return 0
    # Twice: the guard against double inclusion is part of the promise.
    for before in '' '#define VEXOR_WITH_GMP' '#include <gmp.h>'; do
        if ! printf '%s\n#include "%s"\n#include "%s"\ntypedef int not_empty;\n' "$before" "$header" "$header" |
            "$@" $warnings -fsyntax-only -; then
            echo "fails: $* with '$before'"
            failed=1
        fi
    done
}
try gcc -x c -std=c99
try clang -x c -std=c99
try g++ -x c++ -std=c++98
try g++ -x c++ -std=c++20
try clang++ -x c++ -std=c++98
try clang++ -x c++ -std=c++20
command -v gcc >/dev/null 2>&1 || { echo "no gcc"; failed=1; }
command -v g++ >/dev/null 2>&1 || { echo "no g++"; failed=1; }
exit $failed
