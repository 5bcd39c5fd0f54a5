#!/bin/sh
# functions_called.sh LIBRARY SOURCE_FOLDER: each function of the public headers is exported by the shared
# library and called by a test, and nothing else is exported.
set -eu
library=$1
root=$2
functions() {
    # A declaration may go on behind the first line; its name stands on that line.
    grep -hoE '^VEXOR_DLLSPEC .*' "$root/src/api/vexor.h" "$root/src/api/vexor_lite.h" |
        sed -nE 's/^.*[ *](vexorl?_[a-z0-9_]+)\(.*/\1/p' | sort -u
}
declared=$(functions)
num_declarations=$(grep -hcE '^VEXOR_DLLSPEC ' "$root/src/api/vexor.h" "$root/src/api/vexor_lite.h" |
    awk '{ n += $1 } END { print n }')
failed=0
fail() {
    echo "$1"
    failed=1
}
[ "$(echo "$declared" | wc -l)" -eq "$num_declarations" ] || fail "a declaration was not understood"
calls=$(cat "$root"/tests/api/*.c "$root"/tests/api/*.cpp "$root"/tests/unit/api/*.cpp | grep -oE '\bvexorl?_[a-z0-9_]+\(' |
    tr -d '(' | sort -u)
exported=$(nm -D --defined-only "$library" | awk '{ print $NF }' | sort -u)
for name in $declared; do
    echo "$calls" | grep -qx "$name" || fail "no test calls $name"
    echo "$exported" | grep -qx "$name" || fail "not exported: $name"
done
for name in $exported; do
    echo "$declared" | grep -qx "$name" || fail "exported, but not declared: $name"
done
exit $failed
