#!/usr/bin/env python3
"""Compares vexor with clasp and z3 on weighted CNF files:

    bench/compare_maxsat.py [--limit 20] [--solvers clasp,z3] [--vexor BINARY] [--markdown] FILE-OR-FOLDER...

A run gets the limit in seconds of CPU time, user and system together; a run without a proven least cost counts as
unsolved, with the limit as its time. Costs that differ between solvers, or from the third column of a MANIFEST.tsv beside
the folder, end the script with exit code 1.
"""
import argparse
import os
import re
import resource
import signal
import subprocess
import sys
import time

import peers


class Result:
    """One run: the proven cost, or None with the reason in status."""

    def __init__(self):
        self.cost = None
        self.status = "error"
        self.cpu = 0.0


def maxsat_line(text):
    """The cost and status of the output of the MaxSAT evaluations."""
    costs = re.findall(r"^o (-?\d+)", text, re.M)
    if re.search(r"^s UNSATISFIABLE", text, re.M):
        return "unsat", "solved"
    if re.search(r"^s OPTIMUM FOUND", text, re.M) and costs:
        return int(costs[-1]), "solved"
    return None, "error" if re.search("error|Invalid", text, re.I) else "open"


def z3_cost(text):
    """z3 prints the objective only on request: (objectives (goal COST)) or "lower" and "upper"."""
    if "unsat" in text:
        return "unsat", "solved"
    found = re.search(r"\(objectives\s*\(\s*\S*\s+(\d+)\s*\)", text)
    if found and "unknown" not in text and "timeout" not in text:
        return int(found.group(1)), "solved"
    return None, "error" if "error" in text else "open"


def to_smt2(path, target):
    """Writes a weighted CNF file as a problem for z3, whose own reader of the format prints no cost."""
    soft = hard = 0
    with open(path) as source, open(target, "w") as out:
        top, weighted, numbers, declared = None, True, [], False
        for line in source:
            words = line.split()
            if not words or words[0].startswith("c"):
                continue
            if words[0] == "p":
                weighted = words[1].startswith("w")
                top = int(words[4]) if len(words) > 4 else None
                for k in range(1, int(words[2]) + 1):
                    out.write("(declare-const x%d Bool)\n" % k)
                declared = True
                continue
            numbers += [int(word) for word in words]
            while numbers and 0 in numbers[1 if weighted else 0:]:
                end = numbers.index(0, 1 if weighted else 0)
                clause, numbers = numbers[:end], numbers[end + 1:]
                weight = clause.pop(0) if weighted else 1
                if weight < 0:
                    raise ValueError("negative weight")
                lits = ["x%d" % l if l > 0 else "(not x%d)" % -l for l in clause]
                term = "(or %s)" % " ".join(lits) if lits else "false"
                if top is not None and weight >= top:
                    out.write("(assert %s)\n" % term)
                    hard += 1
                elif weight > 0:
                    out.write("(assert-soft %s :weight %d)\n" % (term, weight))
                    soft += 1
        if not declared:
            raise ValueError("no header")
        out.write("(check-sat)\n(get-objectives)\n")


def run(command, limit, reader):
    """Runs a command for at most limit seconds of CPU time."""
    def limits():
        resource.setrlimit(resource.RLIMIT_CPU, (int(limit + 0.999), int(limit + 3)))
        resource.setrlimit(resource.RLIMIT_CORE, (0, 0))

    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                               stderr=subprocess.STDOUT, preexec_fn=limits)
    try:
        output, _ = process.communicate(timeout=4 * limit + 30)
    except subprocess.TimeoutExpired:
        process.send_signal(signal.SIGKILL)
        output, _ = process.communicate()
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    result = Result()
    result.cost, result.status = reader(output.decode("utf-8", "replace"))
    result.cpu = after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime
    if process.returncode in (-signal.SIGXCPU, -signal.SIGKILL) or result.cpu > limit:
        result.cost, result.status = None, "open"
    return result


def solve(name, path, options):
    if name == "vexor":
        return run([options.vexor, "--format", "wcnf", "--no-model", "--quiet", path], options.limit, maxsat_line)
    if name == "clasp":
        # clasp prints the costs in its own style when the whole output is asked for.
        return run(["clasp", "--opt-mode=opt", "--verbose=0", path], options.limit, maxsat_line)
    target = os.path.join(options.folder, "problem.smt2")
    try:
        to_smt2(path, target)
    except ValueError as error:
        result = Result()
        result.status = "error"
        return result
    return run(["z3", target], options.limit, z3_cost)


def collect(paths):
    files = []
    for path in paths:
        if os.path.isdir(path):
            files += [os.path.join(path, name) for name in sorted(os.listdir(path)) if name.endswith(".wcnf")]
        else:
            files.append(path)
    return files


def known_cost(path):
    folder, name = os.path.split(os.path.abspath(path))
    above, part = os.path.split(folder)
    manifest = os.path.join(above, "MANIFEST.tsv")
    if not os.path.exists(manifest):
        return None
    with open(manifest) as rows:
        for row in rows:
            fields = row.rstrip("\n").split("\t")
            if fields[0] == part + "/" + name:
                return int(fields[2])
    return None


def show(cells, widths, markdown):
    if markdown:
        print("| " + " | ".join(cells) + " |")
    else:
        print("  ".join(cell.ljust(width) if i == 0 else cell.rjust(width)
                        for i, (cell, width) in enumerate(zip(cells, widths))), flush=True)


def main():
    import tempfile
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--limit", type=float, default=20)
    parser.add_argument("--solvers", default="clasp,z3")
    parser.add_argument("--vexor", default=os.path.join(peers.ROOT, "build", "release", "bin", "vexor"))
    parser.add_argument("--markdown", action="store_true")
    parser.add_argument("paths", nargs="+")
    options = parser.parse_args()
    names = ["vexor"] + [name for name in options.solvers.split(",") if name]
    peers.need(names[1:])
    widths = [40, 14] + [10] * len(names)
    show(["file", "cost"] + names, widths, options.markdown)
    if options.markdown:
        show(["---"] * (2 + len(names)), widths, True)
    solved = dict.fromkeys(names, 0)
    total = dict.fromkeys(names, 0.0)
    wrong = 0
    with tempfile.TemporaryDirectory() as options.folder:
        for path in collect(options.paths):
            known = known_cost(path)
            cells = []
            for name in names:
                result = solve(name, path, options)
                if result.cost is None:
                    cells.append(result.status)
                    total[name] += options.limit
                    continue
                if known is None:
                    known = result.cost
                solved[name] += 1
                total[name] += result.cpu
                cells.append("%.2f" % result.cpu)
                if result.cost != known:
                    wrong += 1
                    cells[-1] += "!%s" % result.cost
            show([os.path.basename(path)[:widths[0]], "-" if known is None else str(known)] + cells, widths,
                 options.markdown)
    show(["solved", ""] + [str(solved[name]) for name in names], widths, options.markdown)
    show(["CPU seconds", ""] + ["%.1f" % total[name] for name in names], widths, options.markdown)
    if wrong:
        print("%d costs that differ, marked with '!'" % wrong)
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
