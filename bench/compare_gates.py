#!/usr/bin/env python3
"""Compares vexor and z3 from reading to the answer on a formula of Boolean structure:

    bench/compare_gates.py [--gates 1000000] [--runs 3] [--vexor FILE]

The formula is written by bench/generate_gates.py in the native language and in SMT-LIB 2. The solvers run in turn; CPU
seconds are user and system time of the whole process, medians of the runs; the last columns are ratios to z3's.
"""
import argparse
import os
import statistics
import subprocess
import sys
import tempfile

import peers


def run(command):
    """Answer, CPU seconds, peak memory in MB."""
    child = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE)
    answer = child.stdout.read().decode().split()
    child.stdout.close()
    _, _, usage = os.wait4(child.pid, 0)
    return answer[0] if answer else "none", usage.ru_utime + usage.ru_stime, usage.ru_maxrss / 1024.0


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--gates", type=int, default=1000000)
    parser.add_argument("--runs", type=int, default=3)
    parser.add_argument("--vexor", default=os.path.join(peers.ROOT, "build", "release", "bin", "vexor"))
    options = parser.parse_args()
    peers.need(["z3"])
    with tempfile.TemporaryDirectory() as folder:
        native, smt2 = os.path.join(folder, "gates.vx"), os.path.join(folder, "gates.smt2")
        subprocess.run([sys.executable, os.path.join(peers.ROOT, "bench", "generate_gates.py"),
                        str(options.gates), native, smt2], check=True)
        commands = {"vexor": [options.vexor, native], "z3": ["z3", smt2]}
        runs = {name: [] for name in commands}
        for _ in range(options.runs):
            for name, command in commands.items():
                runs[name].append(run(command))
    answers = {result[0] for results in runs.values() for result in results}
    print("| solver | answer | CPU seconds | peak memory | CPU / z3 | memory / z3 |")
    print("|---|---|---:|---:|---:|---:|")
    cpu = {name: statistics.median(r[1] for r in results) for name, results in runs.items()}
    memory = {name: statistics.median(r[2] for r in results) for name, results in runs.items()}
    for name, results in runs.items():
        print("| %s | %s | %.2f | %.0f MB | %.2f | %.2f |" % (name, results[0][0], cpu[name], memory[name],
                                                         cpu[name] / cpu["z3"], memory[name] / memory["z3"]))
    return 0 if len(answers) == 1 else 1


if __name__ == "__main__":
    sys.exit(main())
