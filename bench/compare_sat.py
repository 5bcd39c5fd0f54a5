#!/usr/bin/env python3
"""Compares vexor with MiniSat and CaDiCaL on CNF files:

    bench/compare_sat.py [--limit 20] [--solvers minisat,cadical] [--markdown] FILE-OR-FOLDER...

A run gets the limit in seconds of CPU time, user and system together; a run out of time counts as unsolved, with the
limit as its time. The ratios are vexor's time by the other's on files that both solve, with 10 ms added to each, so that
times near the clock's grain do not decide; their mean is the geometric one. Wrong answers (solvers that disagree, or a
file of known status, given as a MANIFEST.tsv beside the folder) end the script with exit code 1.
"""
import argparse
import math
import os
import sys

import peers

GRAIN = 0.01


def collect(paths):
    files = []
    for path in paths:
        if os.path.isdir(path):
            names = (os.path.join(path, name) for name in sorted(os.listdir(path)))
            files += [name for name in names if name.endswith((".cnf", ".dimacs"))]
        else:
            files.append(path)
    return files


def known_status(path):
    """The status that a MANIFEST.tsv above the file's folder states, or None."""
    folder, name = os.path.split(os.path.abspath(path))
    above, part = os.path.split(folder)
    manifest = os.path.join(above, "MANIFEST.tsv")
    if not os.path.exists(manifest):
        return None
    with open(manifest) as rows:
        for row in rows:
            fields = row.rstrip("\n").split("\t")
            if fields[0] == part + "/" + name:
                return fields[2]
    return None


def ratio(ours, theirs):
    return (ours.cpu + GRAIN) / (theirs.cpu + GRAIN)


def short(value):
    """A count in a few characters."""
    if value is None:
        return "-"
    for unit in ("", "k", "M", "G"):
        if value < 1000:
            return ("%d%s" if unit == "" else "%.1f%s") % (value, unit)
        value /= 1000.0
    return "%.1fT" % value


class Table:
    """Rows of equal length, printed in columns or as a Markdown table, each row as soon as it is known."""

    def __init__(self, heads, widths, markdown):
        self.markdown = markdown
        self.widths = widths
        self.row(heads)
        if markdown:
            self.row(["---"] + ["---:"] * (len(heads) - 1))

    def row(self, cells):
        if self.markdown:
            print("| " + " | ".join(cells) + " |", flush=True)
        else:
            first = cells[0].ljust(self.widths[0])
            print(first + "".join(c.rjust(w) for c, w in zip(cells[1:], self.widths[1:])), flush=True)


def cells_of(run):
    return [run.answer, "%.2f" % run.cpu, short(run.conflicts), short(run.speed), "%.0f" % run.peak_mb]


def check_answers(path, runs, status):
    """Complaints about answers that cannot all be true."""
    answers = {name: run.answer for name, run in runs.items() if run.solved}
    complaints = []
    if len(set(answers.values())) > 1:
        complaints.append("%s: the solvers disagree: %s" % (path, answers))
    if status in ("sat", "unsat"):
        for name, answer in answers.items():
            if answer != status:
                complaints.append("%s: %s answers %s, known is %s" % (path, name, answer, status))
    for name, run in runs.items():
        if run.answer == "error":
            complaints.append("%s: %s ended with an error" % (path, name))
    return complaints


def summary(solvers, results, limit):
    """One line for each solver: solved files, total time, and the mean ratio of vexor to it."""
    ours = [runs[solvers[0].name] for runs in results]
    lines = []
    for solver in solvers:
        runs = [r[solver.name] for r in results]
        total = sum(r.cpu if r.solved else limit for r in runs)
        line = "%s: %d of %d solved, %.1f s" % (solver.name, sum(r.solved for r in runs), len(runs), total)
        both = [(a, b) for a, b in zip(ours, runs) if a.solved and b.solved]
        if solver is not solvers[0] and both:
            mean = math.exp(sum(math.log(ratio(a, b)) for a, b in both) / len(both))
            line += ", vexor / %s on %d files that both solve: %.2f" % (solver.name, len(both), mean)
            speeds = [(a, b) for a, b in both if a.speed and b.speed and min(a.cpu, b.cpu) >= 0.1]
            if speeds:
                mean = math.exp(sum(math.log(a.speed / b.speed) for a, b in speeds) / len(speeds))
                line += ", propagations per second on %d longer ones: %.2f" % (len(speeds), mean)
        lines.append(line)
    return lines


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("paths", nargs="+")
    parser.add_argument("--limit", type=float, default=20)
    parser.add_argument("--solvers", default="minisat,cadical")
    parser.add_argument("--tool", default=os.path.join(peers.ROOT, "build/release/bin/vexor"))
    parser.add_argument("--markdown", action="store_true")
    options = parser.parse_args()
    names = [name for name in options.solvers.split(",") if name]
    peers.need(names)
    solvers = [peers.vexor(options.tool)] + [peers.PEERS[name] for name in names]
    heads = ["file"]
    widths = [40]
    for solver in solvers:
        heads += [solver.name, "s", "confl", "props/s", "MB"]
        widths += [9, 8, 8, 8, 6]
    for name in names:
        heads.append("/" + name)
        widths.append(9)
    table = Table(heads, widths, options.markdown)
    results = []
    complaints = []
    for path in collect(options.paths):
        runs = {solver.name: peers.measure(solver, path, options.limit) for solver in solvers}
        results.append(runs)
        cells = [os.path.basename(path)[:38]]
        for solver in solvers:
            cells += cells_of(runs[solver.name])
        for name in names:
            both = runs["vexor"].solved and runs[name].solved
            cells.append("%.2f" % ratio(runs["vexor"], runs[name]) if both else "-")
        table.row(cells)
        complaints += check_answers(path, runs, known_status(path))
    print()
    for line in summary(solvers, results, options.limit):
        print(("- " if options.markdown else "") + line)
    for complaint in complaints:
        print(complaint, file=sys.stderr)
    return 1 if complaints else 0


if __name__ == "__main__":
    sys.exit(main())
