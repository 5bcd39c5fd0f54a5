#!/usr/bin/env bash
# Compares how long vexor takes to read a formula in its own language, and how much memory that costs, with z3 reading
# the same formula in SMT-LIB 2 without check-sat.
#
# usage: bench/compare_native_read.sh [MEGABYTES [RUNS [VEXOR]]]      (default: 50 5 build/release/bin/vexor)
#
# Prints one row per run of each reader and the ratios of the medians, below 1 where vexor is better.
set -euo pipefail
cd "$(dirname "$0")/.."
megabytes=${1:-50}
runs=${2:-5}
vexor=${3:-build/release/bin/vexor}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

bench/generate_native_read.py "$megabytes" "$work/formula.vx" "$work/formula.smt2"
printf '%s bytes native, %s bytes SMT-LIB 2, %s cores, load %s\n' "$(stat -c %s "$work/formula.vx")" \
    "$(stat -c %s "$work/formula.smt2")" "$(nproc)" "$(cut -d' ' -f1 /proc/loadavg)"
"$vexor" --version
z3 --version

# measure NAME COMMAND...: one row, "name user-seconds wall-seconds kilobytes", also kept for the medians
measure() {
    local name=$1
    shift
    /usr/bin/time -v -o "$work/time" "$@" >"$work/out"
    awk -v name="$name" '
        /User time/ { user = $NF }
        /Elapsed/ { n = split($NF, part, ":"); wall = part[n] + 60 * part[n - 1] }
        /Maximum resident/ { memory = $NF }
        END { printf "%-22s %8.2f %8.2f %10d\n", name, user, wall, memory }' "$work/time" | tee -a "$work/rows"
}

printf '%-22s %8s %8s %10s\n' reader 'user s' 'wall s' 'peak KB'
for ((i = 0; i < runs; i++)); do
    measure vexor "$vexor" --parse --stats "$work/formula.vx"
    cp "$work/out" "$work/stats"
    measure vexor-type-check "$vexor" --parse --type-check --stats "$work/formula.vx"
    cp "$work/out" "$work/stats-type-check"
    measure z3 z3 "$work/formula.smt2"
done

median() { awk -v name="$1" -v column="$2" '$1 == name { print $column }' "$work/rows" | sort -n | awk '{ v[NR] = $1 } END { print v[int((NR + 1) / 2)] }'; }
for reader in vexor vexor-type-check; do
    stats=$work/stats${reader#vexor}
    awk -v reader="$reader" -v user="$(median $reader 2)" -v wall="$(median $reader 3)" -v memory="$(median $reader 4)" \
        -v z3_user="$(median z3 2)" -v z3_wall="$(median z3 3)" -v z3_memory="$(median z3 4)" \
        -v nodes="$(awk '/nodes:/ { print $NF }' "$stats")" -v bytes="$(awk '/node bytes:/ { print $NF }' "$stats")" \
        'BEGIN { printf "%s / z3, medians: user %.2f, wall %.2f, memory %.2f; %d nodes of %.1f bytes\n",
                 reader, user / z3_user, wall / z3_wall, memory / z3_memory, nodes, bytes / nodes }'
done
