// What a caller must never do ends the process with a message that names the function.
#include "api_context.h"

#include "api/vexor_lite.h"

#include "search/search_settings.h"

#include <functional>
#include <gtest/gtest.h>

namespace {

using namespace vexor;
using namespace vexor_test;

// Death by abort, with the function's name and the complaint on the error stream.
void expect_misuse(char const* function, char const* complaint, std::function<void()> const& call) {
    EXPECT_EXIT(call(), testing::KilledBySignal(SIGABRT), std::string(function) + ".*" + complaint)
        << function;
}

#define MISUSE(COMPLAINT, FUNCTION, ...)                                                                     \
    expect_misuse(#FUNCTION, COMPLAINT, [&] { static_cast<void>(FUNCTION(__VA_ARGS__)); })

int ignore(search_data*) { return 1; }

class misuse_test : public testing::Test {
protected:
    misuse_test() {
        GTEST_FLAG_SET(death_test_style, "fast");
        vexor_assert(m_ctx, m_x);
        EXPECT_EQ(vexor_check(m_ctx), 1);
        m_model = vexor_get_model(m_ctx);
    }
    api_context m_ctx;
    vexor_expr m_x = m_ctx.var("x");
    vexor_var_decl m_d = vexor_get_var_decl(m_x);
    vexor_type m_type = vexor_mk_type(m_ctx, "T");
    vexor_model m_model = nullptr;
    vexor_context m_none = nullptr;
    mpz_t m_z = {};
    mpq_t m_q = {};
    long m_long = 0;
    double m_double = 0;
};

TEST_F(misuse_test, no_context) {
    char const* const what = "the context is null";
    int const bit = 1;
    MISUSE(what, vexor_del_context, m_none);
    MISUSE(what, vexor_reset, m_none);
    MISUSE(what, vexor_push, m_none);
    MISUSE(what, vexor_pop, m_none);
    MISUSE(what, vexor_dump_context, m_none);
    MISUSE(what, vexor_inconsistent, m_none);
    MISUSE(what, vexor_interrupt, m_none);
    MISUSE(what, vexor_set_search_callback, m_none, ignore);
    MISUSE(what, vexor_remove_search_callback, m_none);
    MISUSE(what, vexor_assert, m_none, m_x);
    MISUSE(what, vexor_assert_retractable, m_none, m_x);
    MISUSE(what, vexor_assert_weighted, m_none, m_x, 1);
    MISUSE(what, vexor_retract, m_none, 1);
    MISUSE(what, vexor_check, m_none);
    MISUSE(what, vexor_max_sat, m_none);
    MISUSE(what, vexor_max_sat_cost_leq, m_none, 1);
    MISUSE(what, vexor_find_weighted_model, m_none, 0);
    MISUSE(what, vexor_get_unsat_core, m_none, nullptr, 0);
    MISUSE(what, vexor_get_model, m_none);
    MISUSE(what, vexor_create_var_decl_iterator, m_none);
    MISUSE(what, vexor_get_var_decl_from_name, m_none, "x");
    MISUSE(what, vexor_mk_type, m_none, "T");
    MISUSE(what, vexor_mk_function_type, m_none, &m_type, 1, m_type);
    MISUSE(what, vexor_mk_bitvector_type, m_none, 1);
    MISUSE(what, vexor_mk_tuple_type, m_none, nullptr, 0);
    MISUSE(what, vexor_mk_bool_var_decl, m_none, "y");
    MISUSE(what, vexor_mk_var_decl, m_none, "y", m_type);
    MISUSE(what, vexor_mk_var_from_decl, m_none, m_d);
    MISUSE(what, vexor_mk_bool_var_from_decl, m_none, m_d);
    MISUSE(what, vexor_mk_bool_var, m_none, "y");
    MISUSE(what, vexor_mk_fresh_bool_var, m_none);
    MISUSE(what, vexor_mk_true, m_none);
    MISUSE(what, vexor_mk_false, m_none);
    MISUSE(what, vexor_mk_num, m_none, 1);
    MISUSE(what, vexor_mk_num_from_string, m_none, "1");
    MISUSE(what, vexor_mk_num_from_mpz, m_none, m_z);
    MISUSE(what, vexor_mk_num_from_mpq, m_none, m_q);
    MISUSE(what, vexor_mk_bv_constant, m_none, 1, 1);
    MISUSE(what, vexor_mk_bv_constant_from_array, m_none, 1, &bit);
    MISUSE(what, vexor_mk_bv_extract, m_none, 1, 0, m_x);
    MISUSE(what, vexor_mk_app, m_none, m_x, &m_x, 1);
    MISUSE(what, vexor_mk_function_update, m_none, m_x, &m_x, 1, m_x);
    MISUSE(what, vexor_mk_tuple_literal, m_none, &m_x, 1);
    MISUSE(what, vexor_mk_ite, m_none, m_x, m_x, m_x);
}

#define FOR_NARY(DO) DO(or) DO(and) DO(sum) DO(sub) DO(mul)
#define FOR_UNARY(DO) DO(not ) DO(bv_minus) DO(bv_not)
#define FOR_SHIFT(DO) DO(left0) DO(left1) DO(right0) DO(right1) DO(righta)
#define FOR_NUMBERS(DO) DO(eq) DO(diseq) DO(lt) DO(le) DO(gt) DO(ge)
#define FOR_VECTORS(DO) DO(add) DO(sub) DO(mul) DO(concat) DO(and) DO(or) DO(xor)
#define FOR_ORDERS(DO) DO(lt) DO(le) DO(gt) DO(ge) DO(slt) DO(sle) DO(sgt) DO(sge)

TEST_F(misuse_test, operators) {
    char const *const no_context = "the context is null", *const no_expr = "an expression is null";
    vexor_expr const with_null[] = {m_x, nullptr};
    vexor_expr const null = nullptr;
#define TEST_NARY(NAME)                                                                                      \
    MISUSE(no_context, vexor_mk_##NAME, m_none, &m_x, 1);                                                    \
    MISUSE(no_expr, vexor_mk_##NAME, m_ctx, with_null, 2);                                                   \
    MISUSE("an array is null", vexor_mk_##NAME, m_ctx, nullptr, 1);
#define TEST_UNARY(NAME)                                                                                     \
    MISUSE(no_context, vexor_mk_##NAME, m_none, m_x);                                                        \
    MISUSE(no_expr, vexor_mk_##NAME, m_ctx, null);
#define TEST_BINARY(NAME)                                                                                    \
    MISUSE(no_context, vexor_mk_##NAME, m_none, m_x, m_x);                                                   \
    MISUSE(no_expr, vexor_mk_##NAME, m_ctx, null, m_x);                                                      \
    MISUSE(no_expr, vexor_mk_##NAME, m_ctx, m_x, null);
#define TEST_COUNTED(NAME)                                                                                   \
    MISUSE(no_context, vexor_mk_##NAME, m_none, m_x, 1);                                                     \
    MISUSE(no_expr, vexor_mk_##NAME, m_ctx, null, 1);
#define TEST_VECTOR(NAME) TEST_BINARY(bv_##NAME)
#define TEST_SHIFT(NAME) TEST_COUNTED(bv_shift_##NAME)
    FOR_NARY(TEST_NARY)
    FOR_UNARY(TEST_UNARY)
    FOR_NUMBERS(TEST_BINARY)
    FOR_VECTORS(TEST_VECTOR)
    FOR_ORDERS(TEST_VECTOR)
    FOR_SHIFT(TEST_SHIFT)
    TEST_COUNTED(bv_sign_extend)
}

TEST_F(misuse_test, no_argument) {
    char const *const no_expr = "an expression is null", *const no_type = "a type is null";
    char const *const no_decl = "a declaration is null", *const no_name = "the name is null";
    vexor_expr const null = nullptr, with_null[] = {m_x, nullptr};
    vexor_type const types_with_null[] = {m_type, nullptr};
    vexor_type* components[] = {&m_type, nullptr};
    MISUSE(no_expr, vexor_assert, m_ctx, null);
    MISUSE(no_expr, vexor_assert_retractable, m_ctx, null);
    MISUSE(no_expr, vexor_assert_weighted, m_ctx, null, 1);
    MISUSE(no_expr, vexor_get_var_decl, null);
    MISUSE(no_expr, vexor_evaluate_in_model, m_model, null);
    MISUSE(no_expr, vexor_mk_ite, m_ctx, null, m_x, m_x);
    MISUSE(no_expr, vexor_mk_ite, m_ctx, m_x, null, m_x);
    MISUSE(no_expr, vexor_mk_ite, m_ctx, m_x, m_x, null);
    MISUSE(no_expr, vexor_mk_bv_extract, m_ctx, 1, 0, null);
    MISUSE(no_expr, vexor_mk_app, m_ctx, null, &m_x, 1);
    MISUSE(no_expr, vexor_mk_app, m_ctx, m_x, with_null, 2);
    MISUSE("an array is null", vexor_mk_app, m_ctx, m_x, nullptr, 2);
    MISUSE(no_expr, vexor_mk_function_update, m_ctx, null, &m_x, 1, m_x);
    MISUSE(no_expr, vexor_mk_function_update, m_ctx, m_x, with_null, 2, m_x);
    MISUSE(no_expr, vexor_mk_function_update, m_ctx, m_x, &m_x, 1, null);
    MISUSE("an array is null", vexor_mk_function_update, m_ctx, m_x, nullptr, 1, m_x);
    MISUSE(no_expr, vexor_mk_tuple_literal, m_ctx, with_null, 2);
    MISUSE("an array is null", vexor_mk_tuple_literal, m_ctx, nullptr, 2);
    MISUSE(no_type, vexor_mk_function_type, m_ctx, &m_type, 1, nullptr);
    MISUSE(no_type, vexor_mk_function_type, m_ctx, types_with_null, 2, m_type);
    MISUSE("the array is null", vexor_mk_function_type, m_ctx, nullptr, 2, m_type);
    MISUSE("a pointer to a type is null", vexor_mk_tuple_type, m_ctx, components, 2);
    MISUSE("the array is null", vexor_mk_tuple_type, m_ctx, nullptr, 2);
    MISUSE(no_type, vexor_mk_var_decl, m_ctx, "y", nullptr);
    MISUSE(no_name, vexor_mk_var_decl, m_ctx, nullptr, m_type);
    MISUSE(no_name, vexor_mk_bool_var_decl, m_ctx, nullptr);
    MISUSE(no_name, vexor_mk_bool_var, m_ctx, nullptr);
    MISUSE(no_name, vexor_mk_type, m_ctx, nullptr);
    MISUSE(no_name, vexor_get_var_decl_from_name, m_ctx, nullptr);
    MISUSE(no_decl, vexor_mk_var_from_decl, m_ctx, nullptr);
    MISUSE(no_decl, vexor_mk_bool_var_from_decl, m_ctx, nullptr);
    MISUSE(no_decl, vexor_get_var_decl_name, nullptr);
    MISUSE(no_decl, vexor_get_value, m_model, nullptr);
    MISUSE("the text is null", vexor_mk_num_from_string, m_ctx, nullptr);
    MISUSE("the number is null", vexor_mk_num_from_mpz, m_ctx, nullptr);
    MISUSE("the number is null", vexor_mk_num_from_mpq, m_ctx, nullptr);
    MISUSE("the array is null", vexor_mk_bv_constant_from_array, m_ctx, 1, nullptr);
    MISUSE("the array is null", vexor_get_unsat_core, m_ctx, nullptr, 1);
    MISUSE("the callback is null", vexor_set_search_callback, m_ctx, nullptr);
    MISUSE("the file name is null", vexor_enable_log_file, nullptr);
    MISUSE("the iterator is null", vexor_iterator_has_next, nullptr);
    MISUSE("the iterator is null", vexor_iterator_next, nullptr);
    MISUSE("the iterator is null", vexor_iterator_reset, nullptr);
    MISUSE("the iterator is null", vexor_del_iterator, nullptr);
}

TEST_F(misuse_test, no_model_and_no_output) {
    char const *const no_model = "the model is null", *const no_output = "an output argument is null";
    int bit = 0;
    MISUSE(no_model, vexor_display_model, nullptr);
    MISUSE(no_model, vexor_get_value, nullptr, m_d);
    MISUSE(no_model, vexor_get_assertion_value, nullptr, 7);
    MISUSE(no_model, vexor_get_assertion_value, nullptr, -1);
    MISUSE(no_model, vexor_get_int_value, nullptr, m_d, &m_long);
    MISUSE(no_model, vexor_get_arith_value, nullptr, m_d, &m_long, &m_long);
    MISUSE(no_model, vexor_get_double_value, nullptr, m_d, &m_double);
    MISUSE(no_model, vexor_get_mpz_value, nullptr, m_d, m_z);
    MISUSE(no_model, vexor_get_mpq_value, nullptr, m_d, m_q);
    MISUSE(no_model, vexor_get_bitvector_value, nullptr, m_d, 1, &bit);
    MISUSE(no_model, vexor_evaluate_in_model, nullptr, m_x);
    MISUSE(no_model, vexor_get_cost, nullptr);
    MISUSE(no_model, vexor_get_cost_as_double, nullptr);
    MISUSE(no_output, vexor_get_int_value, m_model, m_d, nullptr);
    MISUSE(no_output, vexor_get_arith_value, m_model, m_d, nullptr, &m_long);
    MISUSE(no_output, vexor_get_arith_value, m_model, m_d, &m_long, nullptr);
    MISUSE(no_output, vexor_get_double_value, m_model, m_d, nullptr);
    MISUSE(no_output, vexor_get_mpz_value, m_model, m_d, nullptr);
    MISUSE(no_output, vexor_get_mpq_value, m_model, m_d, nullptr);
    MISUSE(no_output, vexor_get_bitvector_value, m_model, m_d, 1, nullptr);
    MISUSE("a declaration is null", vexor_get_int_value, m_model, nullptr, &m_long);
    MISUSE("a declaration is null", vexor_get_bitvector_value, m_model, nullptr, 1, &bit);
}

TEST_F(misuse_test, pop_without_push) {
    MISUSE("there is no scope to pop", vexor_pop, m_ctx);
    vexor_push(m_ctx);
    vexor_pop(m_ctx);
    MISUSE("there is no scope to pop", vexor_pop, m_ctx);
    vexor_push(m_ctx);
    vexor_assert(m_ctx, vexor_mk_false(m_ctx));
    vexor_push(m_ctx);
    vexor_reset(m_ctx);
    MISUSE("there is no scope to pop", vexor_pop, m_ctx);
}

TEST_F(misuse_test, handles_of_another_context) {
    char const *const expr = "an expression belongs to another context",
                      *const decl = "a declaration belongs to another context",
                      *const type = "a type belongs to another context";
    api_context other;
    vexor_expr const y = other.var("y"), both[] = {m_x, y};
    vexor_expr const one = vexor_mk_true(other);
    vexor_var_decl const d = vexor_get_var_decl(y);
    vexor_type t = vexor_mk_type(other, "T");
    vexor_type* const components[] = {&t};
    int bit = 0;
    MISUSE(expr, vexor_assert, m_ctx, y);
    MISUSE(expr, vexor_assert, m_ctx, one);
    MISUSE(expr, vexor_assert_retractable, m_ctx, y);
    MISUSE(expr, vexor_assert_weighted, m_ctx, y, 1);
    MISUSE(expr, vexor_mk_or, m_ctx, both, 2);
    MISUSE(expr, vexor_mk_not, m_ctx, y);
    MISUSE(expr, vexor_mk_eq, m_ctx, m_x, y);
    MISUSE(expr, vexor_mk_eq, m_ctx, y, m_x);
    MISUSE(expr, vexor_mk_ite, m_ctx, y, m_x, m_x);
    MISUSE(expr, vexor_mk_ite, m_ctx, m_x, m_x, y);
    MISUSE(expr, vexor_mk_app, m_ctx, y, &m_x, 1);
    MISUSE(expr, vexor_mk_app, m_ctx, m_x, both, 2);
    MISUSE(expr, vexor_mk_function_update, m_ctx, m_x, &m_x, 1, y);
    MISUSE(expr, vexor_mk_function_update, m_ctx, m_x, &y, 1, m_x);
    MISUSE(expr, vexor_mk_tuple_literal, m_ctx, both, 2);
    MISUSE(expr, vexor_mk_bv_extract, m_ctx, 1, 0, y);
    MISUSE(expr, vexor_mk_bv_sign_extend, m_ctx, y, 1);
    MISUSE(expr, vexor_evaluate_in_model, m_model, y);
    MISUSE(decl, vexor_mk_var_from_decl, m_ctx, d);
    MISUSE(decl, vexor_mk_bool_var_from_decl, m_ctx, d);
    MISUSE(decl, vexor_get_value, m_model, d);
    MISUSE(decl, vexor_get_int_value, m_model, d, &m_long);
    MISUSE(decl, vexor_get_bitvector_value, m_model, d, 1, &bit);
    MISUSE(type, vexor_mk_var_decl, m_ctx, "z", t);
    MISUSE(type, vexor_mk_function_type, m_ctx, &t, 1, m_type);
    MISUSE(type, vexor_mk_function_type, m_ctx, &m_type, 1, t);
    MISUSE(type, vexor_mk_tuple_type, m_ctx, const_cast<vexor_type**>(components), 1);
}

TEST_F(misuse_test, null_pointers_of_the_lite_interface) {
    char const* const what = "the context is null";
    vexorl_context const lite = vexorl_mk_context();
    MISUSE(what, vexorl_del_context, nullptr);
    MISUSE(what, vexorl_inconsistent, nullptr);
    MISUSE(what, vexorl_read, nullptr, "(check)");
    MISUSE("the text is null", vexorl_read, lite, nullptr);
    MISUSE("the file name is null", vexorl_set_output_file, nullptr);
    MISUSE("the file name is null", vexorl_enable_log_file, nullptr);
    vexorl_del_context(lite);
}

#ifdef VEXOR_DEBUG
TEST_F(misuse_test, handles_of_a_popped_scope) {
    char const* const what = "scope was popped";
    vexor_push(m_ctx);
    vexor_expr const e = m_ctx.not_of(m_x), y = m_ctx.var("y");
    vexor_var_decl const d = vexor_get_var_decl(y);
    vexor_type const t = vexor_mk_type(m_ctx, "inner");
    vexor_pop(m_ctx);
    MISUSE(what, vexor_assert, m_ctx, e);
    MISUSE(what, vexor_assert_retractable, m_ctx, y);
    MISUSE(what, vexor_assert_weighted, m_ctx, y, 1);
    MISUSE(what, vexor_mk_not, m_ctx, e);
    MISUSE(what, vexor_mk_or, m_ctx, &y, 1);
    MISUSE(what, vexor_mk_eq, m_ctx, m_x, e);
    MISUSE(what, vexor_get_var_decl, y);
    MISUSE(what, vexor_get_var_decl_name, d);
    MISUSE(what, vexor_mk_var_from_decl, m_ctx, d);
    MISUSE(what, vexor_mk_var_decl, m_ctx, "z", t);
    MISUSE(what, vexor_mk_function_type, m_ctx, &t, 1, m_type);
    MISUSE(what, vexor_get_value, m_model, d);
    MISUSE(what, vexor_evaluate_in_model, m_model, e);
    // What the outer scope has made is alive.
    vexor_assert(m_ctx, vexor_mk_eq(m_ctx, m_x, m_ctx.var("y")));
    EXPECT_EQ(vexor_check(m_ctx), 1);
}

TEST_F(misuse_test, handles_from_before_a_reset) {
    vexor_reset(m_ctx);
    MISUSE("reset", vexor_assert, m_ctx, m_x);
    MISUSE("reset", vexor_get_var_decl_name, m_d);
    MISUSE("reset", vexor_mk_var_decl, m_ctx, "z", m_type);
    vexor_expr other = nullptr;
    {
        api_context ctx;
        other = ctx.var("other");
    }
    MISUSE("deleted", vexor_assert, m_ctx, other);
}
#endif

// --- Calls from the callback.

std::function<void()> in_callback;

int call(search_data*) {
    in_callback();
    return 1;
}

TEST_F(misuse_test, calls_from_the_callback) {
    vexor_expr const x = m_x;
    vexor_context const ctx = m_ctx;
    m_ctx.assert_pigeons(6);
    auto from_callback = [&](char const* function, std::function<void()> const& action) {
        expect_misuse(function, "callback", [&] {
            g_clause_deletion_frequency = 20;
            in_callback = action;
            vexor_set_search_callback(ctx, call);
            vexor_check(ctx);
        });
    };
    from_callback("vexor_check", [&] { vexor_check(ctx); });
    from_callback("vexor_max_sat", [&] { vexor_max_sat(ctx); });
    from_callback("vexor_assert", [&] { vexor_assert(ctx, x); });
    from_callback("vexor_push", [&] { vexor_push(ctx); });
    from_callback("vexor_pop", [&] { vexor_pop(ctx); });
    from_callback("vexor_reset", [&] { vexor_reset(ctx); });
    from_callback("vexor_del_context", [&] { vexor_del_context(ctx); });
    from_callback("vexor_mk_not", [&] { vexor_mk_not(ctx, x); });
    from_callback("vexor_mk_bool_var", [&] { vexor_mk_bool_var(ctx, "x"); });
    from_callback("vexor_get_model", [&] { vexor_get_model(ctx); });
    from_callback("vexor_get_value", [&] { vexor_get_value(m_model, m_d); });
    from_callback("vexor_inconsistent", [&] { vexor_inconsistent(ctx); });
    from_callback("vexor_set_search_callback", [&] { vexor_set_search_callback(ctx, call); });
    // Of another context, too: the library is not to be entered twice.
    api_context other;
    from_callback("vexor_check", [&] { vexor_check(other); });
    from_callback("vexor_mk_true", [&] { vexor_mk_true(other); });
}

} // namespace
