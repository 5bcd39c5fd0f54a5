#!/bin/sh
# man_pages.sh SOURCE TOOL: the manual pages are formatted without a warning, name every option of the tool and every
# function of the headers as they are, and nothing else.
set -eu
source=$1 tool=$2 pages=$1/docs/man
failed=0
fail() {
    echo "FAILED: $*"
    failed=1
}
# --- Options: those of the help against the headings of the page, each with its argument.
help=$("$tool" --help | sed -n 's/^  \(-[^ ].*\)/\1/p' | sed 's/   *.*//; s/\([^ ]\) [a-z].*/\1/' | sort)
page=$(awk '/^\.SH/ {options = $2 == "OPTIONS"} options && heading {print} {heading = $1 == ".TP"}' "$pages/vexor.1" |
    sed 's/^\.[BIR]* //; s/\\-/-/g; s/ ", " /, /; s/ " \([A-Z]*\)"/ \1/; s/ \[ =dag \]/[=dag]/' | sort)
[ -n "$help" ] || fail "the tool shows no options"
[ "$help" = "$page" ] || {
    fail "vexor.1 (right) and --help (left) differ:"
    printf '%s\n' "$help" >"${TMPDIR:-/tmp}/man_help.$$"
    printf '%s\n' "$page" | diff "${TMPDIR:-/tmp}/man_help.$$" - || true
    rm -f "${TMPDIR:-/tmp}/man_help.$$"
}
# --- Functions: declarations of header and page, in one line each, sorted.
declarations() { tr '\n' ' ' | sed 's/;/;\n/g' | sed 's/  */ /g; s/( /(/g; s/^ //' | grep -E '^[a-z].*vexorl?_[a-z_0-9]*\(.*;$' | sort; }
for name in vexor vexor_lite; do
    header=$(sed 's:/\*.*\*/::; /\/\*/,/\*\//d; /^#/d; s/VEXOR_DLLSPEC/;/' "$source/src/api/$name.h" | declarations)
    page=$(awk '/^\.SH/ {functions = $2 == "FUNCTIONS"} /^\.EE/ {inside = 0} functions && inside {print} /^\.EX/ {inside = 1}' \
        "$pages/$name.3" | declarations)
    [ "$(printf '%s\n' "$header" | wc -l)" -ge 10 ] || fail "$name.h declares too little"
    [ "$header" = "$page" ] || {
        fail "$name.3 (right) and $name.h (left) differ:"
        printf '%s\n' "$header" >"${TMPDIR:-/tmp}/man_header.$$"
        printf '%s\n' "$page" | diff "${TMPDIR:-/tmp}/man_header.$$" - || true
        rm -f "${TMPDIR:-/tmp}/man_header.$$"
    }
done
[ "$failed" = 0 ] || exit 1
# --- The formatter's opinion.
command -v groff >/dev/null 2>&1 || { echo "no groff: the format was not checked"; exit 77; }
for page in "$pages"/*; do
    warnings=$(groff -man -ww -z "$page" 2>&1)
    [ -z "$warnings" ] || fail "$warnings"
done
exit $failed
