#!/bin/sh
# replay_log.sh PROGRAM TOOL FOLDER: the log that PROGRAM FOLDER writes, full.log, is executed by the command line
# tool with the same answers.
set -eu
program=$1
tool=$2
folder=$3
"$program" "$folder" >"$folder/program.out" || { cat "$folder/program.out"; exit 1; }
"$tool" "$folder/full.log" >"$folder/replay.out"
# The first "unsat" is that of an assertion, which the language tells at once; the question behind it is answered
# by the state of the context.
cat >"$folder/replay.expected" <<END
sat
sat
unsat
Logical context is inconsistent. Use (pop) to restore the previous state.
sat
id: 11
id: 13
unsat
sat
id: 11
id: 13
sat
sat
END
diff "$folder/replay.expected" "$folder/replay.out"
