#!/usr/bin/env python3
"""Random CNF files, decided by vexor and by MiniSat or CaDiCaL: random_cnf.py VEXOR [--seconds 120] [--seed 1]

The answers must agree, and vexor's models must satisfy the file, which is checked here. A file that fails is kept, its
name and seed are printed.
"""
import argparse
import os
import random
import subprocess
import sys
import tempfile
import time

ANSWERS = {10: "sat", 20: "unsat"}


def uniform(rng):
    """Clauses of one length near the threshold between satisfiable and unsatisfiable."""
    length, ratio = rng.choice(((2, 1.0), (3, 4.26), (4, 9.9), (5, 21.1)))
    variables = rng.randrange(5, {2: 300, 3: 130, 4: 60, 5: 40}[length])
    count = int(variables * ratio * rng.uniform(0.85, 1.15))
    clauses = []
    for _ in range(count):
        chosen = rng.sample(range(1, variables + 1), min(length, variables))
        clauses.append([v * rng.choice((1, -1)) for v in chosen])
    return variables, clauses


def mixed(rng):
    """Clauses of all lengths, with repetitions, tautologies and units."""
    variables = rng.randrange(1, 80)
    clauses = []
    for _ in range(int(variables * rng.uniform(1, 6))):
        length = rng.choice((1, 2, 2, 3, 3, 3, 4, 8)) if rng.random() < 0.6 else 3
        clauses.append([rng.randrange(1, variables + 1) * rng.choice((1, -1)) for _ in range(length)])
    return variables, clauses


def parities(rng):
    """A system of equations modulo 2 with three variables each."""
    variables = rng.randrange(4, 45)
    clauses = []
    for _ in range(int(variables * rng.uniform(0.7, 1.1))):
        a, b, c = rng.sample(range(1, variables + 1), 3)
        sign = rng.choice((1, -1))
        clauses += [[sign * a, b, c], [sign * a, -b, -c], [-sign * a, b, -c], [-sign * a, -b, c]]
    return variables, clauses


def colouring(rng):
    """Colours for a random graph."""
    vertices, colours = rng.randrange(4, 45), rng.choice((2, 3, 4))
    edges = int(vertices * {2: 1.0, 3: 2.3, 4: 4.4}[colours] * rng.uniform(0.85, 1.15))

    def var(vertex, colour):
        return vertex * colours + colour + 1

    clauses = [[var(v, c) for c in range(colours)] for v in range(vertices)]
    for _ in range(edges):
        a, b = rng.sample(range(vertices), 2)
        clauses += [[-var(a, c), -var(b, c)] for c in range(colours)]
    return vertices * colours, clauses


def pigeons(rng):
    """Pigeons that do or do not fit into the holes, some of them choosy."""
    holes = rng.randrange(2, 8)
    animals = holes + rng.choice((0, 1))

    def var(animal, hole):
        return animal * holes + hole + 1

    clauses = []
    for animal in range(animals):
        likes = [h for h in range(holes) if rng.random() < 0.9] or [0]
        clauses.append([var(animal, h) for h in likes])
    for hole in range(holes):
        clauses += [[-var(a, hole), -var(b, hole)] for a in range(animals) for b in range(a)]
    rng.shuffle(clauses)
    return animals * holes, clauses


FAMILIES = (uniform, mixed, parities, colouring, pigeons)


def decide(command):
    """The answer and the values printed."""
    done = subprocess.run(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=600)
    text = done.stdout.decode("utf-8", "replace")
    values = [int(w) for line in text.splitlines() if line.startswith("v ") for w in line.split()[1:]]
    return ANSWERS.get(done.returncode, "exit code %d: %s" % (done.returncode, text[-500:])), values


def is_model(values, clauses):
    if not values or values[-1] != 0:
        return False
    true = set(values)
    return not any(-v in true for v in true if v) and all(any(l in true for l in c) for c in clauses)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("vexor")
    parser.add_argument("--seconds", type=float, default=120)
    parser.add_argument("--seed", type=int, default=int(time.time()))
    options = parser.parse_args()
    end = time.time() + options.seconds
    counts = {"sat": 0, "unsat": 0}
    folder = tempfile.mkdtemp(prefix="vexor-oracle-")
    path = os.path.join(folder, "random.cnf")
    seed = options.seed
    while time.time() < end:
        rng = random.Random(seed)
        variables, clauses = rng.choice(FAMILIES)(rng)
        with open(path, "w") as out:
            out.write("p cnf %d %d\n" % (variables, len(clauses)))
            out.writelines(" ".join(map(str, clause)) + " 0\n" for clause in clauses)
        peer = rng.choice((["minisat", path], ["cadical", "-n", path]))
        answer, values = decide([options.vexor, path])
        expected, _ = decide(peer)
        if answer != expected or (answer == "sat" and not is_model(values, clauses)):
            print("seed %d, file %s: vexor %s, %s %s" % (seed, path, answer, peer[0], expected))
            return 1
        counts[answer] += 1
        seed += 1
    os.remove(path)
    os.rmdir(folder)
    print("%d files agree: %d satisfiable, %d unsatisfiable, seeds from %d" %
          (sum(counts.values()), counts["sat"], counts["unsat"], options.seed))
    return 0


if __name__ == "__main__":
    sys.exit(main())
