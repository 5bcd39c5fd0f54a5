#!/bin/sh
# header_alone.sh HEADER: the header compiles without any other, as C99 and as C++, without a warning.
set -eu
header=$1
warnings="-pedantic -Wall -Wextra -Werror"
failed=0
try() {
    command -v "$1" >/dev/null 2>&1 || return 0
    # Twice: the guard against double inclusion is part of the promise.
    if ! printf '#include "%s"\n#include "%s"\ntypedef int not_empty;\n' "$header" "$header" |
        "$@" $warnings -fsyntax-only -; then
        echo "fails: $*"
        failed=1
    fi
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
