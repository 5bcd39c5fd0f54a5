#!/usr/bin/env python3
"""Writes one satisfiable problem of Boolean structure twice: in the native language and in SMT-LIB 2.

usage: generate_gates.py GATES NATIVE_FILE SMT2_FILE [SEED]

Assertions of about 50 gates each, with nesting, all connectives and `let`, over the variables of a neighbourhood. Every
formula holds under a hidden valuation, which nearly all variables get at the end of the file, when everything else was
read and translated: so there is little to search, and reading, simplification and translation count. Both files hold
the same commands in the same order.
"""
import random
import sys

# (native operator, SMT-LIB operator, number of arguments, function)
OPERATORS = [
    ("and", "and", 2, lambda a: all(a)), ("and", "and", 3, lambda a: all(a)), ("or", "or", 2, lambda a: any(a)),
    ("or", "or", 4, lambda a: any(a)), ("=>", "=>", 2, lambda a: not a[0] or a[1]),
    ("=", "=", 2, lambda a: a[0] == a[1]), ("/=", "xor", 2, lambda a: a[0] != a[1]),
    ("ite", "ite", 3, lambda a: a[1] if a[0] else a[2]),
]


class Term:
    """A formula's two texts and its value under the hidden valuation."""

    __slots__ = ("native", "smt2", "value")

    def __init__(self, native, smt2, value):
        self.native, self.smt2, self.value = native, smt2, value


def negate(term):
    return Term("(not %s)" % term.native, "(not %s)" % term.smt2, not term.value)


def apply(operator, args):
    native, smt2, _, function = operator
    return Term("(%s %s)" % (native, " ".join(a.native for a in args)),
                "(%s %s)" % (smt2, " ".join(a.smt2 for a in args)), function([a.value for a in args]))


def let(name, term, body):
    return Term("(let ((%s %s))\n %s)" % (name, term.native, body.native),
                "(let ((%s %s))\n %s)" % (name, term.smt2, body.smt2), body.value)


class Problem:
    def __init__(self, native, smt2, seed):
        self.random = random.Random(seed)
        self.native, self.smt2 = native, smt2
        self.smt2.write("(set-logic QF_UF)\n")

    def declare(self, name, value=False):
        self.native.write("(define %s::bool)\n" % name)
        self.smt2.write("(declare-fun %s () Bool)\n" % name)
        return Term(name, name, value)

    def assert_(self, term):
        self.native.write("(assert %s)\n" % term.native)
        self.smt2.write("(assert %s)\n" % term.smt2)

    def inputs(self, number):
        return [self.declare("v%d" % i, self.random.random() < 0.5) for i in range(number)]

    def gate(self, choose):
        operator = self.random.choice(OPERATORS)
        args = [choose() for _ in range(operator[2])]
        return apply(operator, [negate(a) if self.random.random() < 0.3 else a for a in args])

    # Most variables get their hidden values, after everything else was read and translated.
    def fix(self, variables):
        for v in variables:
            if self.random.random() < 0.97:
                self.assert_(v if v.value else negate(v))

    def formulas(self, gates):
        variables = self.inputs(gates // 2)

        def tree(depth, leaf):
            if depth == 0 or self.random.random() < 0.15:
                return leaf()
            self.made += 1
            return self.gate(lambda: tree(depth - 1, leaf))

        total = 0
        while total < gates:
            # A formula speaks about its own neighbourhood.
            first = self.random.randrange(len(variables) - 200)
            near = variables[first:first + 200]
            self.made = 0
            named, definitions = [], []

            def leaf():
                if named and self.random.random() < 0.3:
                    return self.random.choice(named)
                return self.random.choice(near)

            for i in range(8):
                definitions.append(tree(3, leaf))
                named.append(Term("?x%d" % i, "?x%d" % i, definitions[-1].value))
            parts = [tree(3, leaf) for _ in range(4)]
            if not any(p.value for p in parts):
                parts[0] = negate(parts[0])
            body = apply(("or", "or", 0, any), parts)
            for i in range(7, -1, -1):
                body = let(named[i].native, definitions[i], body)
            self.assert_(body)
            total += self.made
        self.fix(variables)


def main():
    if len(sys.argv) not in (4, 5):
        sys.exit(__doc__)
    seed = int(sys.argv[4]) if len(sys.argv) == 5 else 1
    with open(sys.argv[2], "w") as native, open(sys.argv[3], "w") as smt2:
        Problem(native, smt2, seed).formulas(int(sys.argv[1]))
        native.write("(check)\n")
        smt2.write("(check-sat)\n")


main()
