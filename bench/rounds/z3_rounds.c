/* The same rounds through z3's C interface. */
#include "rounds.h"

#include <stdio.h>
#include <stdlib.h>
#include <time.h>
#include <z3.h>

static Z3_ast g_vars[NUM_VARS];

static Z3_ast literal(Z3_context ctx, unsigned l) {
    return (l & 1) ? Z3_mk_not(ctx, g_vars[l >> 1]) : g_vars[l >> 1];
}

static Z3_ast clause(Z3_context ctx, unsigned size) {
    Z3_ast args[3];
    for (unsigned i = 0; i < size; ++i) args[i] = literal(ctx, draw_literal());
    return Z3_mk_or(ctx, size, args);
}

static double seconds(void) { return (double)clock() / CLOCKS_PER_SEC; }

int main(int argc, char** argv) {
    unsigned const rounds = argc > 1 ? (unsigned)atoi(argv[1]) : 10000;
    double const start = seconds();
    Z3_config config = Z3_mk_config();
    Z3_context ctx = Z3_mk_context(config);
    Z3_solver solver = Z3_mk_simple_solver(ctx);
    if (argc > 2) solver = Z3_mk_solver(ctx);
    Z3_solver_inc_ref(ctx, solver);
    Z3_sort bool_sort = Z3_mk_bool_sort(ctx);
    for (unsigned i = 0; i < NUM_VARS; ++i)
        g_vars[i] = Z3_mk_const(ctx, Z3_mk_int_symbol(ctx, (int)i), bool_sort);
    for (unsigned i = 0; i < NUM_CLAUSES; ++i) Z3_solver_assert(ctx, solver, clause(ctx, 3));
    unsigned sat = Z3_solver_check(ctx, solver) == Z3_L_TRUE, unsat = 0;
    double const base = seconds();
    for (unsigned i = 0; i < rounds; ++i) {
        Z3_solver_push(ctx, solver);
        Z3_ast parts[3];
        parts[0] = clause(ctx, 2);
        parts[1] = clause(ctx, 2);
        Z3_ast const left = literal(ctx, draw_literal());
        parts[2] = Z3_mk_eq(ctx, left, literal(ctx, draw_literal()));
        Z3_solver_assert(ctx, solver, Z3_mk_and(ctx, 3, parts));
        Z3_lbool const answer = Z3_solver_check(ctx, solver);
        sat += answer == Z3_L_TRUE;
        unsat += answer == Z3_L_FALSE;
        Z3_solver_pop(ctx, solver, 1);
    }
    printf("sat %u unsat %u base %.3f rounds %.3f\n", sat, unsat, base - start, seconds() - base);
    return 0;
}
