#!/bin/sh
# run_examples.sh TOOL FOLDER LITE: every native file of the folder prints what the file of the same name that ends in
# .expected says, and so does the C program LITE. A file without expectation fails, and an expectation without file.
set -u
tool=$1 folder=$2 lite=$3
failed=0
fail() {
    echo "$1"
    failed=1
}
# compare NAME COMMAND...
compare() {
    expected=$folder/$1.expected
    shift
    [ -f "$expected" ] || { fail "missing: $expected"; return; }
    output=$("$@" 2>&1; echo "exit code $?")
    wanted=$(cat "$expected"; echo "exit code 0")
    [ "$output" = "$wanted" ] && return
    fail "differs from $expected:"
    echo "$output" | diff - "$expected" | head -20
}
number=0
for file in "$folder"/*.vx; do
    compare "$(basename "$file" .vx)" "$tool" "$file"
    number=$((number + 1))
done
[ "$number" -ge 6 ] || fail "only $number native files in $folder"
compare lite "$lite"
for file in "$folder"/*.expected; do
    stem=${file%.expected}
    [ -f "$stem.vx" ] || [ -f "$stem.c" ] || fail "nothing to run for $file"
done
exit $failed
