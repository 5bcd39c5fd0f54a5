#!/usr/bin/env python3
"""How fast a large CNF file is read: bench/read_speed.py [--mb 100] [--solvers minisat,cadical] [--tool PATH]

The file holds random clauses of three literals and ends with two units that contradict each other, so that each solver
has read everything when it knows the answer, and has nothing to search. What is compared is the CPU time, user and
system, of the whole process, the least of three runs.
"""
import argparse
import os
import random
import tempfile

import peers


def write_formula(path, megabytes):
    rng = random.Random(20240607)
    variables = megabytes * 10000
    size = 0
    clauses = 0
    body = path + ".body"
    with open(body, "w") as out:
        while size < megabytes * 1000000:
            lines = []
            for _ in range(10000):
                literals = (rng.randrange(1, variables + 1) * rng.choice((1, -1)) for _ in range(3))
                lines.append("%d %d %d 0\n" % tuple(literals))
            text = "".join(lines)
            size += len(text)
            clauses += len(lines)
            out.write(text)
        out.write("1 0\n-1 0\n")
    with open(path, "w") as out, open(body) as source:
        out.write("p cnf %d %d\n" % (variables, clauses + 2))
        while True:
            block = source.read(1 << 20)
            if not block:
                break
            out.write(block)
    os.remove(body)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--mb", type=int, default=100)
    parser.add_argument("--runs", type=int, default=3)
    parser.add_argument("--solvers", default="minisat,cadical")
    parser.add_argument("--tool", default=os.path.join(peers.ROOT, "build/release/bin/vexor"))
    parser.add_argument("--file", help="keep the generated file here, or use the one that is there")
    options = parser.parse_args()
    names = [name for name in options.solvers.split(",") if name]
    peers.need(names)
    with tempfile.TemporaryDirectory() as folder:
        path = options.file or os.path.join(folder, "read.cnf")
        if not os.path.exists(path):
            write_formula(path, options.mb)
        solvers = [peers.vexor(options.tool)] + [peers.PEERS[name] for name in names]
        for solver in solvers:
            runs = [peers.measure(solver, path, 600) for _ in range(options.runs)]
            best = min(runs, key=lambda r: r.cpu)
            print("%-8s %8.2f s %9.1f MB  %s" % (solver.name, best.cpu, best.peak_mb, best.answer))


if __name__ == "__main__":
    main()
