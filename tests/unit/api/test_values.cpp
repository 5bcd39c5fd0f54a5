// The getters of model values, for values that a theory gives.
#include "api_context.h"

#include "ast/node/nodes.h"
#include "search/theory_hub.h"

#include <climits>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <map>
#include <memory>

namespace {

using namespace vexor;
using namespace vexor_test;

// A theory that knows the values it was told.
class told_values : public theory_hub {
public:
    expr* get_value_for(model const&, var_decl* d) noexcept override {
        auto const found = m_values.find(d);
        return found == m_values.end() ? nullptr : found->second.get();
    }
    std::map<var_decl*, shared_ptr<expr>> m_values;
};

class values_test : public testing::Test {
protected:
    values_test() {
        auto hub = std::make_unique<told_values>();
        m_hub = hub.get();
        m_ctx.inner().set_theory_hub(std::move(hub));
        m_type = vexor_mk_type(m_ctx, "real");
        m_unknown = vexor_mk_var_decl(m_ctx, "unknown", m_type);
    }
    ~values_test() override { m_hub->m_values.clear(); }

    vexor_var_decl with_value(expr* value) {
        std::string const name = "x" + std::to_string(m_hub->m_values.size());
        vexor_var_decl const d = vexor_mk_var_decl(m_ctx, name.c_str(), m_type);
        m_hub->m_values[to_decl(d)] = shared_ptr<expr>(value);
        return d;
    }
    vexor_var_decl number(std::string const& value) {
        shared_ptr<numeral_expr> const n = mk<numeral_expr>(m_ctx.manager(), numeral(value.c_str(), 10), -1);
        return with_value(n.get());
    }
    vexor_var_decl vector(unsigned size, std::string const& value) {
        shared_ptr<bitvector_constant> const c =
            mk<bitvector_constant>(m_ctx.manager(), size, numeral(value.c_str(), 10), -1);
        return with_value(c.get());
    }
    vexor_model get_model() {
        EXPECT_EQ(vexor_check(m_ctx), 1);
        return vexor_get_model(m_ctx);
    }

    api_context m_ctx;
    told_values* m_hub;
    vexor_type m_type;
    vexor_var_decl m_unknown;
};

std::string const max_long = "9223372036854775807", min_long = "-9223372036854775808",
                  above_long = "9223372036854775808", below_long = "-9223372036854775809";

TEST_F(values_test, integers_in_the_range_of_a_long) {
    for (std::string const& text :
         {std::string("0"), std::string("1"), std::string("-1"), std::string("2147483647"),
          std::string("2147483648"), std::string("-2147483649"), std::string("1073741823"),
          std::string("1073741824"), max_long, min_long}) {
        vexor_var_decl const d = number(text);
        vexor_model const m = get_model();
        long value = 77, den = 77;
        EXPECT_EQ(vexor_get_int_value(m, d, &value), 1);
        EXPECT_EQ(std::to_string(value), text);
        value = 77;
        EXPECT_EQ(vexor_get_arith_value(m, d, &value, &den), 1);
        EXPECT_EQ(std::to_string(value), text);
        EXPECT_EQ(den, 1);
    }
}

TEST_F(values_test, no_long_beyond_its_range_and_for_fractions) {
    for (std::string const& text :
         {above_long, below_long, std::string("1/2"), std::string("-7/3"), "1/" + max_long,
          std::string("123456789012345678901234567890"), max_long + "/2"}) {
        vexor_var_decl const d = number(text);
        long value = 77;
        EXPECT_EQ(vexor_get_int_value(get_model(), d, &value), 0) << text;
        EXPECT_EQ(value, 77) << text;
    }
}

TEST_F(values_test, fractions) {
    struct {
        std::string text;
        long num, den;
    } const good[] = {{"1/2", 1, 2},
                      {"-7/3", -7, 3},
                      {"6/4", 3, 2},
                      {max_long + "/2", LONG_MAX, 2},
                      {min_long + "/3", LONG_MIN, 3},
                      {"1/" + max_long, 1, LONG_MAX},
                      {"-1/" + max_long, -1, LONG_MAX}};
    for (auto const& c : good) {
        vexor_var_decl const d = number(c.text);
        long num = 77, den = 77;
        EXPECT_EQ(vexor_get_arith_value(get_model(), d, &num, &den), 1) << c.text;
        EXPECT_EQ(num, c.num) << c.text;
        EXPECT_EQ(den, c.den) << c.text;
    }
    for (std::string const& text : {above_long + "/3", below_long + "/2", "1/" + above_long,
                                    "-1/" + above_long, above_long, below_long}) {
        vexor_var_decl const d = number(text);
        long num = 77, den = 78;
        EXPECT_EQ(vexor_get_arith_value(get_model(), d, &num, &den), 0) << text;
        EXPECT_EQ(num, 77) << text;
        EXPECT_EQ(den, 78) << text;
    }
}

TEST_F(values_test, doubles) {
    struct {
        std::string text;
        double value;
    } const cases[] = {
        {"0", 0},
        {"-5", -5},
        {"1/4", 0.25},
        {"-3/8", -0.375},
        {"9007199254740993", 9007199254740992.0}, // cut towards zero
        {"-9007199254740995", -9007199254740994.0},
        {max_long, std::nextafter(0x1p63, 0)},
        {"1" + std::string(300, '0'), 1e300},
    };
    for (auto const& c : cases) {
        vexor_var_decl const d = number(c.text);
        double value = 0.5;
        EXPECT_EQ(vexor_get_double_value(get_model(), d, &value), 1) << c.text;
        EXPECT_NEAR(value, c.value, std::abs(c.value) * 3e-16) << c.text;
        if (c.text.size() < 20) {
            EXPECT_EQ(value, c.value) << c.text;
        }
    }
    // Both parts beyond the range of a double, and a value beyond it.
    std::string const huge = "1" + std::string(400, '0');
    vexor_var_decl const third = number(huge + "/3" + std::string(400, '0'));
    double value = 7;
    EXPECT_EQ(vexor_get_double_value(get_model(), third, &value), 1);
    EXPECT_NEAR(value, 1.0 / 3, 1e-15);
    vexor_var_decl const far = number("-" + huge);
    EXPECT_EQ(vexor_get_double_value(get_model(), far, &value), 1);
    EXPECT_TRUE(std::isinf(value) || value == -std::numeric_limits<double>::max()) << value;
    EXPECT_LT(value, 0);
}

TEST_F(values_test, numbers_of_gmp) {
    mpz_t z;
    mpq_t q;
    mpz_init(z);
    mpq_init(q);
    auto text = [&](bool rational) {
        char* const digits = rational ? mpq_get_str(nullptr, 10, q) : mpz_get_str(nullptr, 10, z);
        std::string const result = digits;
        std::free(digits);
        return result;
    };
    for (std::string const& number_text : {std::string("0"), std::string("-17"), std::string("1073741824"),
                                           above_long, below_long, "1" + std::string(100, '0')}) {
        vexor_var_decl const d = number(number_text);
        vexor_model const m = get_model();
        mpz_set_si(z, 5);
        EXPECT_EQ(vexor_get_mpz_value(m, d, z), 1);
        EXPECT_EQ(text(false), number_text);
        mpq_set_si(q, 5, 6);
        EXPECT_EQ(vexor_get_mpq_value(m, d, q), 1);
        EXPECT_EQ(text(true), number_text);
    }
    for (std::string const& number_text :
         {std::string("1/2"), std::string("-22/7"), "1/" + above_long, below_long + "/2"}) {
        vexor_var_decl const d = number(number_text);
        vexor_model const m = get_model();
        mpz_set_si(z, 5);
        EXPECT_EQ(vexor_get_mpz_value(m, d, z), 0);
        EXPECT_EQ(text(false), "5");
        EXPECT_EQ(vexor_get_mpq_value(m, d, q), 1);
        EXPECT_EQ(text(true), number_text);
    }
    mpz_clear(z);
    mpq_clear(q);
}

TEST_F(values_test, bits) {
    vexor_var_decl const d = vector(4, "11"); // 1011
    vexor_model const m = get_model();
    int bits[7];
    for (int n = 0; n <= 6; ++n) {
        std::fill(std::begin(bits), std::end(bits), 9);
        EXPECT_EQ(vexor_get_bitvector_value(m, d, n, bits), 1);
        int const expected[] = {1, 1, 0, 1, 0, 0};
        for (int i = 0; i < n; ++i) EXPECT_EQ(bits[i], expected[i]) << n << " " << i;
        for (int i = n; i < 7; ++i) EXPECT_EQ(bits[i], 9) << n << " " << i;
    }
    EXPECT_EQ(vexor_get_bitvector_value(m, d, 0, nullptr), 1);
    std::string const power_99 = "633825300114114700748351602688";
    vexor_var_decl const wide = vector(100, power_99);
    std::vector<int> many(100, 9);
    EXPECT_EQ(vexor_get_bitvector_value(get_model(), wide, 100, many.data()), 1);
    for (int i = 0; i < 100; ++i) EXPECT_EQ(many[static_cast<std::size_t>(i)], i == 99 ? 1 : 0);
}

// A value of another kind, no value, a Boolean, no model at all.
TEST_F(values_test, absent_values_leave_the_outputs_alone) {
    vexor_var_decl const a_number = number("3"), a_vector = vector(2, "1");
    vexor_var_decl const boolean = vexor_get_var_decl(m_ctx.var("b"));
    vexor_assert(m_ctx, m_ctx.var("b"));
    mpz_t z;
    mpq_t q;
    mpz_init_set_si(z, 77);
    mpq_init(q);
    mpq_set_si(q, 7, 8);
    vexor_model m = get_model();
    auto is_no_number = [&](vexor_var_decl d) {
        long num = 77, den = 78;
        double value = 1.5;
        EXPECT_EQ(vexor_get_int_value(m, d, &num), 0);
        EXPECT_EQ(vexor_get_arith_value(m, d, &num, &den), 0);
        EXPECT_EQ(vexor_get_double_value(m, d, &value), 0);
        EXPECT_EQ(vexor_get_mpz_value(m, d, z), 0);
        EXPECT_EQ(vexor_get_mpq_value(m, d, q), 0);
        EXPECT_TRUE(num == 77 && den == 78 && value == 1.5);
        EXPECT_TRUE(mpz_get_si(z) == 77 && mpq_cmp_si(q, 7, 8) == 0);
    };
    auto is_no_vector = [&](vexor_var_decl d) {
        int bits[2] = {9, 8};
        EXPECT_EQ(vexor_get_bitvector_value(m, d, 2, bits), 0);
        EXPECT_TRUE(bits[0] == 9 && bits[1] == 8);
    };
    for (vexor_var_decl d : {m_unknown, boolean, a_vector}) is_no_number(d);
    for (vexor_var_decl d : {m_unknown, boolean, a_number}) is_no_vector(d);
    // What is no Boolean variable of the search has no truth value.
    EXPECT_EQ(vexor_get_value(m, m_unknown), 0);
    EXPECT_EQ(vexor_get_value(m, a_number), 0);
    EXPECT_EQ(vexor_get_value(m, boolean), 1);
    // The handle of a model that is no longer valid.
    vexor_assert(m_ctx, m_ctx.var("c"));
    EXPECT_EQ(vexor_get_model(m_ctx), nullptr);
    is_no_number(a_number);
    is_no_vector(a_vector);
    EXPECT_EQ(vexor_get_value(m, boolean), 0);
    EXPECT_EQ(vexor_evaluate_in_model(m, m_ctx.var("b")), 0);
    EXPECT_EQ(vexor_get_cost(m), -1);
    mpz_clear(z);
    mpq_clear(q);
}

TEST_F(values_test, truth_of_formulas) {
    vexor_expr const a = m_ctx.var("a"), b = m_ctx.var("b"), open = m_ctx.var("open");
    vexor_assert(m_ctx, a);
    vexor_assert(m_ctx, m_ctx.not_of(b));
    vexor_model const m = get_model();
    EXPECT_EQ(vexor_evaluate_in_model(m, vexor_mk_true(m_ctx)), 1);
    EXPECT_EQ(vexor_evaluate_in_model(m, vexor_mk_false(m_ctx)), -1);
    EXPECT_EQ(vexor_evaluate_in_model(m, open), 0);
    EXPECT_EQ(vexor_evaluate_in_model(m, m_ctx.or_of({open, a})), 1);
    EXPECT_EQ(vexor_evaluate_in_model(m, m_ctx.and_of({open, b})), -1);
    EXPECT_EQ(vexor_evaluate_in_model(m, vexor_mk_eq(m_ctx, a, b)), -1);
    EXPECT_EQ(vexor_evaluate_in_model(m, vexor_mk_diseq(m_ctx, a, b)), 1);
    EXPECT_EQ(vexor_evaluate_in_model(m, vexor_mk_ite(m_ctx, b, open, a)), 1);
    EXPECT_EQ(vexor_evaluate_in_model(m, vexor_mk_num(m_ctx, 1)), 0);
    // The question changes nothing: no variable was made, the model is still there.
    EXPECT_EQ(vexor_get_model(m_ctx), m);
    EXPECT_EQ(vexor_get_value(m, vexor_get_var_decl(open)), 0);
}

TEST_F(values_test, assertions) {
    vexor_expr const a = m_ctx.var("a");
    assertion_id const id = vexor_assert_retractable(m_ctx, a);
    vexor_model const m = get_model();
    EXPECT_EQ(vexor_get_assertion_value(m, id), 1);
    EXPECT_EQ(vexor_get_assertion_value(m, id ^ 1), 0);
    for (assertion_id no : {0, 1, -1, -2, INT_MIN, INT_MAX, INT_MAX - 1, 100000, 100001})
        EXPECT_TRUE(vexor_get_assertion_value(m, no) == 0 || no == 0) << no;
}

} // namespace
