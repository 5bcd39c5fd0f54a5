"""Runs solvers on DIMACS files and reads their figures; shared by the scripts of this folder."""
import ast
import os
import re
import resource
import shutil
import signal
import subprocess
import sys
import time

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))


class Solver:
    """A solver: how to call it, and where its output tells conflicts and propagations."""

    def __init__(self, name, command, conflicts, propagations):
        self.name = name
        self.command = command
        self.conflicts = re.compile(conflicts, re.M)
        self.propagations = re.compile(propagations, re.M)


def vexor(binary):
    return Solver("vexor", [binary, "--format", "cnf", "--stats", "--no-model"],
                  r"^c search\.conflicts\s+(\d+)", r"^c search\.propagations\s+(\d+)")


MINISAT = Solver("minisat", ["minisat", "-no-pre"], r"^conflicts\s*:\s*(\d+)", r"^propagations\s*:\s*(\d+)")
CADICAL = Solver("cadical", ["cadical", "-n"], r"^c conflicts:\s+(\d+)", r"^c propagations:\s+(\d+)")
PEERS = {"minisat": MINISAT, "cadical": CADICAL}


class Run:
    """The result of one solver on one file. answer is sat, unsat, unknown (also: out of time) or error."""

    def __init__(self):
        self.answer = "error"
        self.cpu = 0.0
        self.peak_mb = 0.0
        self.conflicts = None
        self.propagations = None

    @property
    def solved(self):
        return self.answer in ("sat", "unsat")

    @property
    def speed(self):
        """Propagations per second of CPU time."""
        return self.propagations / self.cpu if self.propagations and self.cpu > 0 else None


def need(names):
    """Installs the peers from Debian's packages if they are missing and this is root."""
    missing = [name for name in names if not shutil.which(name)]
    if not missing:
        return
    command = ["apt-get", "install", "-y", "--no-install-recommends"] + missing
    if os.geteuid() != 0:
        sys.exit("missing solvers, as root: " + " ".join(command))
    environment = dict(os.environ, DEBIAN_FRONTEND="noninteractive")
    subprocess.run(command, check=True, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, env=environment)


def figure(pattern, text):
    found = pattern.search(text)
    return int(found.group(1)) if found else None


def run(solver, path, limit):
    """Runs the solver on the file, for at most limit seconds of CPU time. CPU time is user and system together, peak
    memory is the largest resident set, both as the system accounts them."""
    result = Run()

    def limits():
        resource.setrlimit(resource.RLIMIT_CPU, (int(limit + 0.999), int(limit + 3)))
        resource.setrlimit(resource.RLIMIT_CORE, (0, 0))

    process = subprocess.Popen(solver.command + [path], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                               stderr=subprocess.STDOUT, preexec_fn=limits)
    # A process that sleeps uses no CPU time, so the wall clock has a limit too.
    deadline = time.time() + 4 * limit + 30
    output = b""
    try:
        output, _ = process.communicate(timeout=max(1.0, deadline - time.time()))
    except subprocess.TimeoutExpired:
        process.send_signal(signal.SIGKILL)
        output, _ = process.communicate()
    text = output.decode("utf-8", "replace")
    result.conflicts = figure(solver.conflicts, text)
    result.propagations = figure(solver.propagations, text)
    codes = {10: "sat", 20: "unsat", 0: "unknown", -signal.SIGXCPU: "unknown", -signal.SIGKILL: "unknown"}
    result.answer = codes.get(process.returncode, "error")
    return result


def measure(solver, path, limit):
    """As run, with CPU time and memory: the work is done in a child of its own, whose children are just this run. A peak
    below that of the Python process itself (some 11 MB) cannot be told from it."""
    reader, writer = os.pipe()
    child = os.fork()
    if child == 0:
        os.close(reader)
        result = run(solver, path, limit)
        usage = resource.getrusage(resource.RUSAGE_CHILDREN)
        fields = [result.answer, usage.ru_utime + usage.ru_stime, usage.ru_maxrss / 1024.0, result.conflicts,
                  result.propagations]
        os.write(writer, repr(fields).encode())
        os._exit(0)
    os.close(writer)
    text = b""
    while True:
        block = os.read(reader, 4096)
        if not block:
            break
        text += block
    os.close(reader)
    os.waitpid(child, 0)
    result = Run()
    if text:
        result.answer, result.cpu, result.peak_mb, result.conflicts, result.propagations = ast.literal_eval(text.decode())
    if result.cpu > limit and result.solved:
        result.answer = "unknown"
    return result
