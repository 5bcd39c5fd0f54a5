#!/bin/sh
# run_examples.sh TOOL FOLDER PROGRAM...: every native file of the folder prints what the file of the same name that
# ends in .expected says, and so does every C and C++ program of the folder, built as PROGRAM with the name
# example_NAME. A file without expectation fails, and so does an expectation without a file.
set -u
tool=$1 folder=$2
shift 2
failed=0
fail() {
    echo "$1"
    failed=1
}
# compare NAME COMMAND...: what a program writes to the error stream is progress, and differs from run to run.
compare() {
    expected=$folder/$1.expected
    shift
    [ -f "$expected" ] || { fail "missing: $expected"; return; }
    output=$("$@"; echo "exit code $?")
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
for source in "$folder"/*.c "$folder"/*.cpp; do
    name=$(basename "$source")
    name=${name%.*}
    found=""
    for program in "$@"; do
        [ "$(basename "$program")" != "example_$name" ] || found=$program
    done
    if [ -n "$found" ]; then compare "$name" "$found"; else fail "not built: $source"; fi
done
for file in "$folder"/*.expected; do
    stem=${file%.expected}
    [ -f "$stem.vx" ] || [ -f "$stem.c" ] || [ -f "$stem.cpp" ] || fail "nothing to run for $file"
done
exit $failed
