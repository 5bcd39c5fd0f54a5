/* A C program on the full interface: contexts, scopes, assertions, questions, models and names, each function
 * on its ordinary path, and the log of it all.
 *
 * full_test FOLDER: writes its files there. */
#define _POSIX_C_SOURCE 200809L

#include <limits.h>
#include <unistd.h>

#include "check.h"
#include "vexor.h"

static const char expected_log[] = "(define a::bool)\n"
                                   "(define b::bool)\n"
                                   "(assert (or a b))\n"
                                   "(check)\n"
                                   "(push)\n"
                                   "(assert (not a))\n"
                                   "(check)\n"
                                   "(push)\n"
                                   "(assert (not b))\n"
                                   "(check)\n"
                                   "(pop)\n"
                                   "(check)\n"
                                   "(pop)\n"
                                   "(assert+ (not a))\n"
                                   "(assert+ (not b))\n"
                                   "(check)\n"
                                   "(retract 11)\n"
                                   "(check)\n"
                                   "(reset)\n"
                                   "(define x::bool)\n"
                                   "(define y::bool)\n"
                                   "(assert (= x y))\n"
                                   "(assert+ x 3)\n"
                                   "(assert+ (not y) 9223372036854775807)\n"
                                   "(max-sat)\n"
                                   "(define v!1::bool)\n"
                                   "(define v!2::bool)\n";

static void settings(void) {
    CHECK(vexor_version() != NULL && vexor_version() == vexor_version());
    CHECK(strchr(vexor_version(), '.') != NULL);
    vexor_set_verbosity(-1);
    vexor_set_verbosity(0);
    vexor_enable_type_checker(1);
    vexor_enable_type_checker(0);
    vexor_set_arith_only(1);
    vexor_set_arith_only(0);
    vexor_set_max_num_conflicts_in_maxsat_iteration(10000);
    vexor_set_max_num_iterations_in_maxsat(10000);
}

static void scopes(vexor_context ctx) {
    vexor_expr a = vexor_mk_bool_var(ctx, "a");
    vexor_expr b = vexor_mk_bool_var(ctx, "b");
    vexor_expr args[2];
    vexor_model m;
    assertion_id not_a, not_b, core[4];
    args[0] = a;
    args[1] = b;
    vexor_assert(ctx, vexor_mk_or(ctx, args, 2));
    CHECK(vexor_get_model(ctx) == NULL);
    CHECK(vexor_check(ctx) == 1);
    CHECK(vexor_get_model(ctx) != NULL);
    vexor_push(ctx);
    vexor_assert(ctx, vexor_mk_not(ctx, a));
    CHECK(vexor_get_model(ctx) == NULL);
    CHECK(vexor_check(ctx) == 1);
    m = vexor_get_model(ctx);
    CHECK(vexor_get_value(m, vexor_get_var_decl(a)) == -1);
    CHECK(vexor_get_value(m, vexor_get_var_decl(b)) == 1);
    CHECK(vexor_evaluate_in_model(m, vexor_mk_and(ctx, args, 2)) == -1);
    CHECK(vexor_evaluate_in_model(m, vexor_mk_or(ctx, args, 2)) == 1);
    vexor_push(ctx);
    vexor_assert(ctx, vexor_mk_not(ctx, b));
    CHECK(vexor_inconsistent(ctx) == 1);
    CHECK(vexor_check(ctx) == -1);
    CHECK(vexor_get_model(ctx) == NULL);
    vexor_pop(ctx);
    CHECK(vexor_inconsistent(ctx) == 0);
    CHECK(vexor_check(ctx) == 1);
    vexor_pop(ctx);
    not_a = vexor_assert_retractable(ctx, vexor_mk_not(ctx, a));
    not_b = vexor_assert_retractable(ctx, vexor_mk_not(ctx, b));
    CHECK(not_a > 0 && not_b > 0 && not_a != not_b);
    CHECK(vexor_check(ctx) == -1);
    CHECK(vexor_get_unsat_core(ctx, NULL, 0) == 2);
    memset(core, 0, sizeof core);
    CHECK(vexor_get_unsat_core(ctx, core, 1) == 2 && core[0] != 0 && core[1] == 0);
    CHECK(vexor_get_unsat_core(ctx, core, 4) == 2 && core[2] == 0);
    CHECK((core[0] == not_a && core[1] == not_b) || (core[0] == not_b && core[1] == not_a));
    vexor_retract(ctx, not_a);
    CHECK(vexor_check(ctx) == 1);
    CHECK(vexor_get_unsat_core(ctx, core, 4) == 0);
    m = vexor_get_model(ctx);
    CHECK(vexor_get_assertion_value(m, not_a) == 0);
    CHECK(vexor_get_assertion_value(m, not_b) == 1);
    CHECK(vexor_get_cost(m) == -1 && vexor_get_cost_as_double(m) == -1.0);
}

static void weights(vexor_context ctx) {
    vexor_expr x = vexor_mk_bool_var(ctx, "x");
    vexor_expr y = vexor_mk_bool_var(ctx, "y");
    assertion_id light, heavy;
    vexor_model m;
    vexor_assert(ctx, vexor_mk_eq(ctx, x, y));
    light = vexor_assert_weighted(ctx, x, 3);
    heavy = vexor_assert_weighted(ctx, vexor_mk_not(ctx, y), (vexor_int64)(~0ull >> 1));
    CHECK(vexor_max_sat(ctx) == 1);
    m = vexor_get_model(ctx);
    CHECK(m != NULL && vexor_get_cost(m) == 3 && vexor_get_cost_as_double(m) == 3.0);
    CHECK(vexor_get_assertion_value(m, light) == 0 && vexor_get_assertion_value(m, heavy) == 1);
    CHECK(vexor_max_sat_cost_leq(ctx, 3) == 1 && vexor_get_cost(vexor_get_model(ctx)) == 3);
    CHECK(vexor_max_sat_cost_leq(ctx, 2) == 1 && vexor_get_cost(vexor_get_model(ctx)) == 3);
    vexor_set_maxsat_initial_cost(5);
    CHECK(vexor_max_sat_cost_leq(ctx, 1000) == 1 && vexor_get_cost(vexor_get_model(ctx)) == 3);
    CHECK(vexor_find_weighted_model(ctx, 0) == 1);
    CHECK(vexor_find_weighted_model(ctx, 1) == 1);
    m = vexor_get_model(ctx);
    CHECK(vexor_get_value(m, vexor_get_var_decl(x)) == vexor_get_value(m, vexor_get_var_decl(y)));
}

static void names(vexor_context ctx) {
    vexor_var_decl_iterator it = vexor_create_var_decl_iterator(ctx);
    vexor_var_decl x = vexor_get_var_decl_from_name(ctx, "x");
    vexor_var_decl y = vexor_get_var_decl_from_name(ctx, "y");
    vexor_var_decl first, second;
    CHECK(x != NULL && y != NULL && vexor_get_var_decl_from_name(ctx, "no such name") == NULL);
    CHECK(strcmp(vexor_get_var_decl_name(x), "x") == 0);
    CHECK(vexor_iterator_has_next(it) == 1 && vexor_iterator_has_next(it) == 1);
    first = vexor_iterator_next(it);
    second = vexor_iterator_next(it);
    CHECK((first == x && second == y) || (first == y && second == x));
    CHECK(vexor_iterator_has_next(it) == 0 && vexor_iterator_next(it) == NULL);
    vexor_iterator_reset(it);
    CHECK(vexor_iterator_next(it) == first);
    vexor_del_iterator(it);
    CHECK(strcmp(vexor_get_var_decl_name(vexor_get_var_decl(vexor_mk_fresh_bool_var(ctx))), "v!1") == 0);
    CHECK(strcmp(vexor_get_var_decl_name(vexor_get_var_decl(vexor_mk_fresh_bool_var(ctx))), "v!2") == 0);
}

static int go_on(search_data* data) { return data != NULL; }

/* What is printed to standard output, which goes to a file meanwhile. */
static void output(vexor_context ctx, const char* file_name) {
    int const console = dup(1);
    CHECK(vexor_max_sat(ctx) == 1);
    fflush(stdout);
    CHECK(freopen(file_name, "w", stdout) != NULL);
    vexor_display_model(vexor_get_model(ctx));
    fflush(stdout);
    CHECK(dup2(console, 1) == 1);
    CHECK(file_holds(file_name, "(= x false)\n(= y false)\n\ncost: 3\n"));
    fflush(stdout);
    CHECK(freopen(file_name, "w", stdout) != NULL);
    vexor_dump_context(ctx);
    fflush(stdout);
    CHECK(dup2(console, 1) == 1);
    CHECK(file_begins(file_name, "(clause (not x) y)\n"));
    close(console);
}

int main(int argc, char** argv) {
    char log_name[4096], output_name[4096];
    vexor_context ctx;
    if (argc != 2) return 2;
    snprintf(log_name, sizeof log_name, "%s/full.log", argv[1]);
    snprintf(output_name, sizeof output_name, "%s/full.out", argv[1]);
    settings();
    vexor_enable_log_file(log_name);
    vexor_enable_log_file(output_name); /* no effect */
    ctx = vexor_mk_context();
    CHECK(ctx != NULL);
    vexor_set_search_callback(ctx, go_on);
    vexor_remove_search_callback(ctx);
    vexor_interrupt(ctx); /* no search: no effect */
    scopes(ctx);
    vexor_reset(ctx);
    weights(ctx);
    names(ctx);
    CHECK(file_holds(log_name, expected_log));
    output(ctx, output_name);
    vexor_del_context(ctx);
    if (num_failures == 0) printf("all holds\n");
    return num_failures != 0;
}
