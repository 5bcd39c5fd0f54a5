/* The shortest life of a program that asks something: from the start of the process to its first answer. */
#include <stdio.h>

#ifdef PEER
#include <z3.h>

int main(void) {
    Z3_config config = Z3_mk_config();
    Z3_context ctx = Z3_mk_context(config);
    Z3_solver solver = Z3_mk_solver(ctx);
    Z3_ast x = Z3_mk_const(ctx, Z3_mk_string_symbol(ctx, "x"), Z3_mk_bool_sort(ctx));
    Z3_solver_inc_ref(ctx, solver);
    Z3_solver_assert(ctx, solver, Z3_mk_not(ctx, x));
    printf("%d\n", Z3_solver_check(ctx, solver));
    return 0;
}
#else
#include <vexor.h>

int main(void) {
    vexor_context ctx = vexor_mk_context();
    vexor_assert(ctx, vexor_mk_not(ctx, vexor_mk_bool_var(ctx, "x")));
    printf("%d\n", vexor_check(ctx));
    return 0;
}
#endif
