#!/usr/bin/env python3
"""Compares the full C interface with z3's: compare_api.py [BUILD_FOLDER] [--nodes N] [--runs N].

Compiles each program of bench/api twice, against the shared library of the build folder (default: build/release) and
against the peer's, and runs them in turn: building terms (CPU time and peak memory) and the shortest life of a
program that asks something (elapsed time). Prints the best of the runs, the ratios, and the sizes of the stripped
shared libraries."""
import argparse
import os
import resource
import subprocess
import sys
import tempfile
import time

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
SOURCES = os.path.join(ROOT, "bench", "api")


def need_peer():
    """Installs the peer's development package if it is missing and this is root."""
    if subprocess.run(["gcc", "-E", "-x", "c", "-"], input="#include <z3.h>\n", text=True,
                      stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL).returncode == 0:
        return
    command = ["apt-get", "install", "-y", "--no-install-recommends", "libz3-dev"]
    if os.geteuid() != 0:
        sys.exit("the peer is missing, as root: " + " ".join(command))
    environment = dict(os.environ, DEBIAN_FRONTEND="noninteractive")
    subprocess.run(command, check=True, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, env=environment)


def compile_program(name, library_folder, folder):
    """The paths of the two executables."""
    source = os.path.join(SOURCES, name + ".c")
    ours, peers = os.path.join(folder, name), os.path.join(folder, name + "_peer")
    subprocess.run(["gcc", "-std=c99", "-O2", "-I", os.path.join(ROOT, "src", "api"), source, "-o", ours,
                    "-L", library_folder, "-lvexor", "-Wl,-rpath," + library_folder], check=True)
    subprocess.run(["gcc", "-std=c99", "-O2", "-DPEER", source, "-o", peers, "-lz3"], check=True)
    return ours, peers


def run(command):
    """CPU seconds, elapsed seconds, peak memory in MB."""
    start = time.perf_counter()
    child = subprocess.Popen(command, stdout=subprocess.DEVNULL)
    _, status, usage = os.wait4(child.pid, 0)
    elapsed = time.perf_counter() - start
    child.returncode = os.waitstatus_to_exitcode(status)
    if child.returncode != 0:
        sys.exit("failed: " + " ".join(command))
    return usage.ru_utime + usage.ru_stime, elapsed, usage.ru_maxrss / 1024


def best_of(ours, peers, arguments, num_runs):
    """The least figure of each kind over the runs, which alternate."""
    figures = {ours: [], peers: []}
    for _ in range(num_runs):
        for program in (ours, peers):
            figures[program].append(run([program] + arguments))
    return [tuple(min(column) for column in zip(*figures[program])) for program in (ours, peers)]


def stripped_size(library, folder):
    stripped = os.path.join(folder, "stripped.so")
    subprocess.run(["strip", "-o", stripped, library], check=True)
    return os.path.getsize(stripped) / 1e6


def peer_library(program):
    for line in subprocess.run(["ldd", program], check=True, capture_output=True, text=True).stdout.splitlines():
        if "libz3" in line:
            return line.split("=>")[1].split()[0]
    sys.exit("the peer's library was not found")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("build", nargs="?", default=os.path.join(ROOT, "build", "release"))
    parser.add_argument("--nodes", type=int, default=5000000)
    parser.add_argument("--runs", type=int, default=3)
    options = parser.parse_args()
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
    need_peer()
    library_folder = os.path.join(os.path.abspath(options.build), "src")
    with tempfile.TemporaryDirectory() as folder:
        terms = compile_program("terms", library_folder, folder)
        first = compile_program("first_answer", library_folder, folder)
        (cpu, _, memory), (peer_cpu, _, peer_memory) = best_of(*terms, [str(options.nodes)], options.runs)
        (_, start, _), (_, peer_start, _) = best_of(*first, [], 10 * options.runs)
        size = stripped_size(os.path.join(library_folder, "libvexor.so"), folder)
        peer_size = stripped_size(peer_library(terms[1]), folder)
    print("| | vexor | z3 | ratio |")
    print("|---|---|---|---|")
    for what, ours, peers, unit in (
            ("%d nodes, CPU" % options.nodes, cpu, peer_cpu, "s"),
            ("%d nodes, peak memory" % options.nodes, memory, peer_memory, "MB"),
            ("start to first answer, elapsed", 1000 * start, 1000 * peer_start, "ms"),
            ("stripped shared library", size, peer_size, "MB")):
        print("| %s | %.2f %s | %.2f %s | %.2f |" % (what, ours, unit, peers, unit, ours / peers))


if __name__ == "__main__":
    main()
