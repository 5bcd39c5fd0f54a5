#!/usr/bin/env python3
"""Writes one random formula twice: in the native language and in SMT-LIB 2.

usage: generate_native_read.py MEGABYTES NATIVE_FILE SMT2_FILE [SEED]

The formula has definitions, let and shared subterms, over booleans, integers, reals, uninterpreted functions and
bit-vectors. Both files hold the same commands in the same order; MEGABYTES is the size of the native one.
"""
import random
import sys

SORTS = {"b": ("bool", "Bool"), "i": ("int", "Int"), "r": ("real", "Real"),
         "v": ("(bitvector 32)", "(_ BitVec 32)")}
# result sort: (native operator, SMT-LIB operator, sorts of the arguments)
OPERATORS = {
    "b": [("and", "and", "bb"), ("and", "and", "bbb"), ("or", "or", "bb"), ("or", "or", "bbbb"), ("not", "not", "b"),
          ("=>", "=>", "bb"), ("=", "=", "ii"), ("=", "=", "vv"), ("/=", "distinct", "rr"), ("<", "<", "ii"),
          ("<=", "<=", "rr"), (">", ">", "ii"), (">=", ">=", "rr"), ("bv-lt", "bvult", "vv"), ("bv-sle", "bvsle", "vv"),
          ("ite", "ite", "bbb"), ("p", "p", "ii")],
    "i": [("+", "+", "ii"), ("+", "+", "iii"), ("-", "-", "ii"), ("*", "*", "#i"), ("ite", "ite", "bii"),
          ("f", "f", "i"), ("g", "g", "ii")],
    "r": [("+", "+", "rr"), ("-", "-", "rr"), ("+", "+", "rrr"), ("ite", "ite", "brr"), ("h", "h", "r")],
    "v": [("bv-add", "bvadd", "vv"), ("bv-sub", "bvsub", "vv"), ("bv-and", "bvand", "vv"), ("bv-xor", "bvxor", "vv"),
          ("bv-not", "bvnot", "v"), ("ite", "ite", "bvv"), ("u", "u", "v")],
}
FUNCTIONS = [("p", "ii", "b"), ("f", "i", "i"), ("g", "ii", "i"), ("h", "r", "r"), ("u", "v", "v")]
CONSTANTS_PER_SORT = 2000


class Writer:
    def __init__(self, megabytes, native, smt2, seed):
        self.random = random.Random(seed)
        self.limit = megabytes * 1000000
        self.native, self.smt2 = native, smt2
        self.size = 0
        self.declared = {s: [f"{s}{i}" for i in range(CONSTANTS_PER_SORT)] for s in SORTS}
        self.names = self.declared  # what a leaf may be
        self.definitions = {s: [] for s in SORTS}
        self.num_definitions = 0

    def write(self, native, smt2):
        self.native.write(native)
        self.smt2.write(smt2)
        self.size += len(native)

    def numeral(self):
        n = self.random.randrange(-20, 1000)
        return str(n), str(n) if n >= 0 else f"(- {-n})"

    def leaf(self, sort, local):
        choice = self.random.random()
        if choice < 0.15 and sort == "i":
            return self.numeral()
        if choice < 0.1 and sort == "v":
            bits = format(self.random.getrandbits(32), "032b")
            return "0b" + bits, "#b" + bits
        if choice < 0.45 and local[sort]:
            name = self.random.choice(local[sort])
        else:
            name = self.random.choice(self.names[sort])
        return name, name

    def term(self, sort, depth, local):
        if depth == 0 or self.random.random() < 0.15:
            return self.leaf(sort, local)
        native_op, smt2_op, args = self.random.choice(OPERATORS[sort])
        native, smt2 = [native_op], [smt2_op]
        for arg in args:
            n, s = self.numeral() if arg == "#" else self.term(arg, depth - 1, local)
            native.append(n)
            smt2.append(s)
        return f"({' '.join(native)})", f"({' '.join(smt2)})"

    # let with a few variables, each of which uses the earlier ones; the variables are shared by what follows.
    def let(self, sort, num_variables, local):
        if num_variables == 0:
            return self.term(sort, 4, local)
        variable_sort = self.random.choice("birv")
        name = f"?{variable_sort}{num_variables}"
        n, s = self.term(variable_sort, 3, local)
        inner = dict(local)
        inner[variable_sort] = local[variable_sort] + [name]
        body_n, body_s = self.let(sort, num_variables - 1, inner)
        return f"(let (({name} {n})) {body_n})", f"(let (({name} {s})) {body_s})"

    def declare(self):
        self.smt2.write("(set-logic ALL)\n")
        for sort, (native_sort, smt2_sort) in SORTS.items():
            for name in self.declared[sort]:
                self.write(f"(define {name}::{native_sort})\n", f"(declare-fun {name} () {smt2_sort})\n")
        for name, domain, result in FUNCTIONS:
            native = " ".join(SORTS[s][0] for s in domain + result)
            smt2 = " ".join(SORTS[s][1] for s in domain)
            self.write(f"(define {name}::(-> {native}))\n", f"(declare-fun {name} ({smt2}) {SORTS[result][1]})\n")

    def define(self):
        sort = self.random.choice("birv")
        name = f"d{self.num_definitions}"
        self.num_definitions += 1
        # Definitions over definitions would make terms whose size as a tree is beyond any reader that walks over trees.
        self.names = self.declared
        n, s = self.let(sort, 2, {s: [] for s in SORTS})
        self.write(f"(define {name}::{SORTS[sort][0]} {n})\n", f"(define-fun {name} () {SORTS[sort][1]} {s})\n")
        self.definitions[sort].append(name)
        if len(self.definitions[sort]) > CONSTANTS_PER_SORT:
            self.definitions[sort].pop(0)
        self.names = {s: self.declared[s] + self.definitions[s] for s in SORTS}

    def run(self):
        self.declare()
        while self.size < self.limit:
            if self.random.random() < 0.2:
                self.define()
            n, s = self.let("b", self.random.randrange(1, 9), {s: [] for s in SORTS})
            self.write(f"(assert {n})\n", f"(assert {s})\n")


def main():
    if len(sys.argv) not in (4, 5):
        sys.exit(__doc__)
    seed = int(sys.argv[4]) if len(sys.argv) == 5 else 1
    with open(sys.argv[2], "w") as native, open(sys.argv[3], "w") as smt2:
        Writer(float(sys.argv[1]), native, smt2, seed).run()


main()
