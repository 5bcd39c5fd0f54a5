#!/usr/bin/env python3
"""Incremental use, and unusual amounts of it:

    bench/compare_rounds.py [--rounds 10000] [--peer-rounds N] [--robust] [BUILD_FOLDER]

Rounds of push, assert, check and pop over a base of 50,000 clauses, through vexor's lite interface and through z3's C
interface (bench/rounds); prints CPU seconds for the base and for one round. --peer-rounds gives z3 fewer rounds.
--robust instead prints vexor's time and memory for 100,000 levels of nesting, 1,000,000 assertions, 100,000 pairs of
push and pop, and 100,000 checks on one context. BUILD_FOLDER has the shared library, build/release by default.
"""
import argparse
import os
import subprocess
import sys
import tempfile

import peers

SOURCES = os.path.join(peers.ROOT, "bench", "rounds")


def compile_program(name, arguments, folder):
    program = os.path.join(folder, name)
    subprocess.run(["gcc", "-O2", os.path.join(SOURCES, name + ".c"), "-o", program] + arguments, check=True)
    return program


def rounds(program, number):
    """CPU seconds of the base and of one round, and the line printed."""
    line = subprocess.run([program, str(number)], check=True, stdout=subprocess.PIPE).stdout.decode().strip()
    words = line.split()
    return float(words[5]), float(words[7]) / number, line


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--rounds", type=int, default=10000)
    parser.add_argument("--peer-rounds", type=int)
    parser.add_argument("--robust", action="store_true")
    parser.add_argument("build", nargs="?", default=os.path.join(peers.ROOT, "build", "release"))
    options = parser.parse_args()
    library = os.path.join(os.path.abspath(options.build), "src")
    ours = ["-I" + os.path.join(peers.ROOT, "src", "api"), "-L" + library, "-lvexor", "-Wl,-rpath," + library]
    with tempfile.TemporaryDirectory() as folder:
        if options.robust:
            program = compile_program("vexor_robust", ours, folder)
            for mode, number in (("nesting", 100000), ("assertions", 1000000), ("pairs", 100000), ("checks", 100000)):
                subprocess.run([program, mode, str(number)], check=True)
            return 0
        vexor = rounds(compile_program("vexor_rounds", ours, folder), options.rounds)
        z3 = rounds(compile_program("z3_rounds", ["-lz3"], folder), options.peer_rounds or options.rounds)
    print("vexor: %s\nz3:    %s" % (vexor[2], z3[2]))
    print("one round: vexor %.3f ms, z3 %.3f ms, ratio %.3f" % (1000 * vexor[1], 1000 * z3[1], vexor[1] / z3[1]))
    return 0


if __name__ == "__main__":
    sys.exit(main())
