/* A C program on the constructors of terms and types: each of them, and how what it builds is written.
 *
 * terms_test FOLDER: writes the log of its assertions there. The context is inconsistent from the start, so
 * that no term is refused because no solver here decides it: that would be an exception, the end of a program
 * in C. */
#include "check.h"

#define VEXOR_WITH_GMP
#include "vexor.h"

static const char expected_log[] = "(assert false)\n"
                                   "(define p::bool)\n"
                                   "(define q::bool)\n"
                                   "(define x::int)\n"
                                   "(define r::real)\n"
                                   "(define n::nat)\n"
                                   "(define-type T)\n"
                                   "(define t::T)\n"
                                   "(define v::(bitvector 4))\n"
                                   "(define w::(bitvector 4))\n"
                                   "(define f::(-> int T bool))\n"
                                   "(define u::(tuple int bool))\n"
                                   "(assert true)\n"
                                   "(assert (or p q))\n"
                                   "(assert (and p q))\n"
                                   "(assert (not p))\n"
                                   "(assert (= p q))\n"
                                   "(assert (/= p q))\n"
                                   "(assert (ite p q p))\n"
                                   "(assert (= (+ x -7) 12345678901234567890))\n"
                                   "(assert (= (- x 1) 1/3))\n"
                                   "(assert (= (* x x) -2/7))\n"
                                   "(assert (< x r))\n"
                                   "(assert (<= x n))\n"
                                   "(assert (> x r))\n"
                                   "(assert (>= x 18446744073709551616))\n"
                                   "(assert (= (bv-add v w) 0b1101))\n"
                                   "(assert (= (bv-sub v w) 0b0001))\n"
                                   "(assert (= (bv-mul v w) 0b0001))\n"
                                   "(assert (= (bv-neg v) (bv-not w)))\n"
                                   "(assert (= (bv-concat v w) (bv-sign-extend v 4)))\n"
                                   "(assert (= (bv-and v w) (bv-or v w)))\n"
                                   "(assert (= (bv-xor v w) w))\n"
                                   "(assert (= (bv-extract 3 1 v) (bv-extract 3 1 w)))\n"
                                   "(assert (= (bv-shift-left0 v 1) (bv-shift-left1 v 2)))\n"
                                   "(assert (= (bv-shift-right0 v 1) (bv-shift-right1 v 2)))\n"
                                   "(assert (= (bv-shift-righta v 3) v))\n"
                                   "(assert (bv-lt v w))\n"
                                   "(assert (bv-le v w))\n"
                                   "(assert (bv-gt v w))\n"
                                   "(assert (bv-ge v w))\n"
                                   "(assert (bv-slt v w))\n"
                                   "(assert (bv-sle v w))\n"
                                   "(assert (bv-sgt v w))\n"
                                   "(assert (bv-sge v w))\n"
                                   "(assert (f x t))\n"
                                   "(assert (= (update f (x t) p) f))\n"
                                   "(assert (= u (mk-tuple x p)))\n";

static vexor_context ctx;

static vexor_expr same(vexor_expr a, vexor_expr b) { return vexor_mk_eq(ctx, a, b); }
static void say(vexor_expr e) { vexor_assert(ctx, e); }

static void booleans(vexor_expr p, vexor_expr q) {
    vexor_expr args[2];
    args[0] = p;
    args[1] = q;
    CHECK(vexor_mk_true(ctx) == vexor_mk_true(ctx) && vexor_mk_false(ctx) == vexor_mk_false(ctx));
    CHECK(vexor_mk_true(ctx) != vexor_mk_false(ctx));
    say(vexor_mk_true(ctx));
    say(vexor_mk_or(ctx, args, 2));
    say(vexor_mk_and(ctx, args, 2));
    say(vexor_mk_not(ctx, p));
    say(vexor_mk_eq(ctx, p, q));
    say(vexor_mk_diseq(ctx, p, q));
    say(vexor_mk_ite(ctx, p, q, p));
}

static void numbers(vexor_expr x, vexor_expr r, vexor_expr n) {
    vexor_expr args[2];
    mpz_t z;
    mpq_t rational;
    mpz_init(z);
    mpq_init(rational);
    args[0] = x;
    args[1] = vexor_mk_num(ctx, -7);
    say(same(vexor_mk_sum(ctx, args, 2), vexor_mk_num_from_string(ctx, "12345678901234567890")));
    args[1] = vexor_mk_num(ctx, 1);
    say(same(vexor_mk_sub(ctx, args, 2), vexor_mk_num_from_string(ctx, "2/6")));
    args[1] = x;
    mpq_set_si(rational, -4, 14); /* not canonical */
    say(same(vexor_mk_mul(ctx, args, 2), vexor_mk_num_from_mpq(ctx, rational)));
    say(vexor_mk_lt(ctx, x, r));
    say(vexor_mk_le(ctx, x, n));
    say(vexor_mk_gt(ctx, x, r));
    mpz_ui_pow_ui(z, 2, 64);
    say(vexor_mk_ge(ctx, x, vexor_mk_num_from_mpz(ctx, z)));
    mpz_clear(z);
    mpq_clear(rational);
}

static void vectors(vexor_expr v, vexor_expr w) {
    int bits[4] = {1, 0, 0, 0};
    int other_bits[4] = {-5, 0, 1, 2}; /* whatever is not 0 is 1 */
    vexor_expr const one = vexor_mk_bv_constant_from_array(ctx, 4, bits);
    say(same(vexor_mk_bv_add(ctx, v, w), vexor_mk_bv_constant_from_array(ctx, 4, other_bits)));
    say(same(vexor_mk_bv_sub(ctx, v, w), one));
    say(same(vexor_mk_bv_mul(ctx, v, w), vexor_mk_bv_constant(ctx, 4, 0x71)));
    say(same(vexor_mk_bv_minus(ctx, v), vexor_mk_bv_not(ctx, w)));
    say(same(vexor_mk_bv_concat(ctx, v, w), vexor_mk_bv_sign_extend(ctx, v, 4)));
    say(same(vexor_mk_bv_and(ctx, v, w), vexor_mk_bv_or(ctx, v, w)));
    say(same(vexor_mk_bv_xor(ctx, v, w), w));
    say(same(vexor_mk_bv_extract(ctx, 3, 1, v), vexor_mk_bv_extract(ctx, 1, 3, w)));
    say(same(vexor_mk_bv_shift_left0(ctx, v, 1), vexor_mk_bv_shift_left1(ctx, v, 2)));
    say(same(vexor_mk_bv_shift_right0(ctx, v, 1), vexor_mk_bv_shift_right1(ctx, v, 2)));
    say(same(vexor_mk_bv_shift_righta(ctx, v, 3), v));
    say(vexor_mk_bv_lt(ctx, v, w));
    say(vexor_mk_bv_le(ctx, v, w));
    say(vexor_mk_bv_gt(ctx, v, w));
    say(vexor_mk_bv_ge(ctx, v, w));
    say(vexor_mk_bv_slt(ctx, v, w));
    say(vexor_mk_bv_sle(ctx, v, w));
    say(vexor_mk_bv_sgt(ctx, v, w));
    say(vexor_mk_bv_sge(ctx, v, w));
}

int main(int argc, char** argv) {
    char log_name[4096];
    vexor_type integer, real, nat, other, vector, domain[2], function, tuple;
    vexor_type* components[2];
    vexor_var_decl p, q, decl;
    vexor_expr x, r, n, t, v, w, f, u, args[2];
    if (argc != 2) return 2;
    snprintf(log_name, sizeof log_name, "%s/terms.log", argv[1]);
    vexor_enable_log_file(log_name);
    ctx = vexor_mk_context();
    vexor_assert(ctx, vexor_mk_false(ctx));
    p = vexor_mk_bool_var_decl(ctx, "p");
    q = vexor_mk_var_decl(ctx, "q", vexor_mk_type(ctx, "bool"));
    integer = vexor_mk_type(ctx, "int");
    real = vexor_mk_type(ctx, "real");
    nat = vexor_mk_type(ctx, "nat");
    x = vexor_mk_var_from_decl(ctx, vexor_mk_var_decl(ctx, "x", integer));
    r = vexor_mk_var_from_decl(ctx, vexor_mk_var_decl(ctx, "r", real));
    n = vexor_mk_var_from_decl(ctx, vexor_mk_var_decl(ctx, "n", nat));
    other = vexor_mk_type(ctx, "T");
    t = vexor_mk_var_from_decl(ctx, vexor_mk_var_decl(ctx, "t", vexor_mk_type(ctx, "T")));
    vector = vexor_mk_bitvector_type(ctx, 4);
    v = vexor_mk_var_from_decl(ctx, vexor_mk_var_decl(ctx, "v", vector));
    w = vexor_mk_var_from_decl(ctx, vexor_mk_var_decl(ctx, "w", vector));
    domain[0] = integer;
    domain[1] = other;
    function = vexor_mk_function_type(ctx, domain, 2, vexor_mk_type(ctx, "bool"));
    f = vexor_mk_var_from_decl(ctx, vexor_mk_var_decl(ctx, "f", function));
    components[0] = &integer;
    domain[1] = vexor_mk_type(ctx, "bool");
    components[1] = &domain[1];
    tuple = vexor_mk_tuple_type(ctx, components, 2);
    decl = vexor_mk_var_decl(ctx, "u", tuple);
    u = vexor_mk_var_from_decl(ctx, decl);
    CHECK(vexor_get_var_decl(u) == decl && strcmp(vexor_get_var_decl_name(decl), "u") == 0);

    booleans(vexor_mk_bool_var_from_decl(ctx, p), vexor_mk_bool_var_from_decl(ctx, q));
    CHECK(vexor_get_var_decl(vexor_mk_bool_var(ctx, "p")) == p);
    CHECK(vexor_mk_bool_var(ctx, "p") != vexor_mk_bool_var(ctx, "p"));
    numbers(x, r, n);
    vectors(v, w);
    args[0] = x;
    args[1] = t;
    say(vexor_mk_app(ctx, f, args, 2));
    say(same(vexor_mk_function_update(ctx, f, args, 2, vexor_mk_bool_var(ctx, "p")), f));
    args[1] = vexor_mk_bool_var(ctx, "p");
    say(same(u, vexor_mk_tuple_literal(ctx, args, 2)));
    CHECK(vexor_get_var_decl(vexor_mk_num(ctx, 1)) == NULL);
    CHECK(file_holds(log_name, expected_log));
    vexor_del_context(ctx);
    if (num_failures == 0) printf("all holds\n");
    return num_failures != 0;
}
