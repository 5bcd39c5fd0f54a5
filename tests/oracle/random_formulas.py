#!/usr/bin/env python3
"""Random formulas in files with scopes, decided by vexor and by z3: random_formulas.py VEXOR [--seconds 120] [--seed 1]

Each file has 100 to 1500 variables, formulas with nesting, all connectives and `let`, definitions over earlier
definitions, and checks within push and pop, in the native language and in SMT-LIB 2. The answers must agree, and every
formula that is asserted must be true in vexor's model. A file that fails is kept, its name and seed are printed.
"""
import argparse
import os
import random
import subprocess
import sys
import tempfile
import time

# (native operator, SMT-LIB operator, least and greatest number of arguments)
OPERATORS = (("and", "and", 2, 4), ("or", "or", 2, 5), ("=>", "=>", 2, 2), ("=", "=", 2, 2), ("/=", "xor", 2, 2),
             ("ite", "ite", 3, 3), ("not", "not", 1, 1))


class Script:
    """The two texts of one file, line by line, and the formulas that are asserted in each open scope."""

    def __init__(self, rng):
        self.rng = rng
        self.native, self.smt2 = [], ["(set-logic QF_UF)"]
        self.variables = ["v%d" % i for i in range(rng.randrange(100, 1500))]
        for name in self.variables:
            self.write("(define %s::bool)" % name, "(declare-fun %s () Bool)" % name)
        self.num_formulas = 0
        self.scopes = [[]]
        self.names = [[]]

    def write(self, native, smt2):
        self.native.append(native)
        self.smt2.append(smt2)

    def term(self, depth, leaves):
        """The two texts of a term."""
        if depth == 0 or self.rng.random() < 0.1:
            leaf = self.rng.choice(leaves)
            return leaf, leaf
        native, smt2, least, greatest = self.rng.choice(OPERATORS)
        args = [self.term(depth - 1, leaves) for _ in range(self.rng.randint(least, greatest))]
        return ("(%s %s)" % (native, " ".join(a[0] for a in args)), "(%s %s)" % (smt2, " ".join(a[1] for a in args)))

    def let(self, levels, leaves):
        """Each level shares its term with all below."""
        if levels == 0:
            return self.term(3, leaves)
        name = "?x%d" % levels
        value = self.term(2, leaves)
        body = self.let(levels - 1, leaves + [name] * 10)
        return tuple("(let ((%s %s)) %s)" % (name, value[i], body[i]) for i in range(2))

    def formula(self):
        """Defines a formula and gives its name."""
        near = self.rng.sample(self.variables, 12)
        known = [name for names in self.names for name in names]
        if known and self.rng.random() < 0.3:
            near += self.rng.sample(known, min(3, len(known)))
        terms = self.let(self.rng.randrange(4), near)
        if self.rng.random() < 0.7:  # weak ones leave something to decide
            more = self.term(2, near)
            terms = tuple("(or %s %s)" % (terms[i], more[i]) for i in range(2))
        name = "f%d" % self.num_formulas
        self.num_formulas += 1
        self.write("(define %s::bool %s)" % (name, terms[0]), "(define-fun %s () Bool %s)" % (name, terms[1]))
        self.names[-1].append(name)
        return name

    def clauses(self):
        """Clauses near the threshold, so that answers differ."""
        for _ in range(int(len(self.variables) * self.rng.uniform(1.0, 3.2))):
            lits = [v if self.rng.random() < 0.5 else "(not %s)" % v for v in self.rng.sample(self.variables, 3)]
            text = "(assert (or %s))" % " ".join(lits)
            self.write(text, text)

    def assert_formula(self):
        name = self.formula()
        self.write("(assert %s)" % name, "(assert %s)" % name)
        self.scopes[-1].append(name)

    def check(self):
        self.write('(echo "check\\n") (check)', "(check-sat)")
        for scope in self.scopes:
            for name in scope:
                self.native.append("(eval-in-model %s)" % name)

    def push(self):
        self.write("(push)", "(push 1)")
        self.scopes.append([])
        self.names.append([])

    def pop(self):
        self.write("(pop)", "(pop 1)")
        self.scopes.pop()
        self.names.pop()

    def generate(self):
        self.clauses()
        for _ in range(self.rng.randrange(5, 60)):
            self.assert_formula()
        self.check()
        for _ in range(self.rng.randrange(2, 12)):
            choice = self.rng.random()
            if choice < 0.4 and len(self.scopes) < 5:
                self.push()
            elif choice < 0.6 and len(self.scopes) > 1:
                self.pop()
            for _ in range(self.rng.randrange(1, 15)):
                self.assert_formula()
            self.check()
        return self


def run(command):
    done = subprocess.run(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=600)
    return done.stdout.decode("utf-8", "replace")


def vexor_answers(text):
    """One answer for each check, and the lines that evaluate an asserted formula to anything but true. A check of a
    dead context prints that it is inconsistent."""
    answers, wrong = [], []
    for part in text.split("check\n")[1:]:
        lines = part.splitlines()
        dead = lines and lines[0].startswith("Logical context is inconsistent")
        answers.append("unsat" if dead else lines[0] if lines else "none")
        if answers[-1] == "sat":
            wrong += [line for line in lines[1:] if "evaluates to" in line and not line.endswith("evaluates to true")]
    return answers, wrong


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("vexor")
    parser.add_argument("--seconds", type=float, default=120)
    parser.add_argument("--seed", type=int, default=int(time.time()))
    options = parser.parse_args()
    end = time.time() + options.seconds
    counts = {"sat": 0, "unsat": 0}
    folder = tempfile.mkdtemp(prefix="vexor-oracle-")
    native, smt2 = os.path.join(folder, "random.vx"), os.path.join(folder, "random.smt2")
    seed, files, evaluated = options.seed, 0, 0
    while time.time() < end:
        script = Script(random.Random(seed)).generate()
        with open(native, "w") as out:
            out.write("\n".join(script.native) + "\n")
        with open(smt2, "w") as out:
            out.write("\n".join(script.smt2) + "\n")
        text = run([options.vexor, native])
        answers, wrong = vexor_answers(text)
        expected = run(["z3", smt2]).split()
        if answers != expected or wrong:
            print("seed %d, file %s: vexor %s, z3 %s, not true: %s" % (seed, native, answers, expected, wrong[:3]))
            return 1
        evaluated += text.count("evaluates to true")
        for answer in answers:
            counts[answer] += 1
        files += 1
        seed += 1
    for path in (native, smt2):
        if os.path.exists(path):
            os.remove(path)
    os.rmdir(folder)
    print("%d files agree: %d checks satisfiable, %d unsatisfiable, %d formulas true in models, seeds from %d" %
          (files, counts["sat"], counts["unsat"], evaluated, options.seed))
    return 0


if __name__ == "__main__":
    sys.exit(main())
