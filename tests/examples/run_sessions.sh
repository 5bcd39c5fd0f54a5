#!/bin/sh
# run_sessions.sh PAGE NUMBER TOOL WORK: carries out the sessions of a page and compares with what it shows. There must
# be NUMBER of them.
#
# A session is an indented block with the lines "$ cat NAME", the text of that file, "$ ./run NAME" and what that prints.
set -eu
page=$1 number=$2 tool=$3 work=$4
rm -rf "$work"
mkdir -p "$work"
cd "$work"
awk '
    !/^    / { if ($0 != "") file = ""; next }
    { line = substr($0, 5) }
    line ~ /^\$ cat / { file = substr(line, 7); printf "" > file; next }
    line ~ /^\$ \.\/run / && file != "" {
        name = substr(line, 9)
        print name > "sessions"
        file = name ".expected"
        printf "" > file
        next
    }
    line ~ /^\$ / { file = ""; next }
    file != "" { print line > file }
' "$page"
failed=0
for name in $(cat sessions); do
    "$tool" "$name" >output 2>&1 || true
    [ "$(cat output)" = "$(cat "$name.expected")" ] || { echo "FAILED: $name of $page"; diff output "$name.expected" || true; failed=1; }
done
[ "$(wc -l <sessions)" = "$number" ] || { echo "$(wc -l <sessions) sessions in $page, not $number"; failed=1; }
exit $failed
