// How terms are written in the log: what is read back equals them.
#include "api_context.h"
#include "log_replay.h"

#include "ast/node/nodes.h"
#include "frontend/read_term.h"
#include "support/random.h"
#include "support/terms.h"

#include <gtest/gtest.h>

namespace {

using namespace vexor;
using namespace vexor_test;

// Terms of all constructors, with or without regard to types: the constructors look at none.
class term_maker {
public:
    term_maker(api_context const& ctx, std::uint64_t seed)
        : m_ctx(ctx)
        , m_random(seed) {
        vexor_type const integer = vexor_mk_type(ctx, "int"), other = vexor_mk_type(ctx, "T");
        vexor_type vector = vexor_mk_bitvector_type(ctx, 8);
        vexor_type const domain[] = {integer, vector};
        vexor_type* components[] = {&vector, &m_bool};
        for (char const* name : {"p", "q", "fresh!1", "x_1"}) m_pool.push_back(ctx.var(name));
        m_functions = {ctx.constant("f", vexor_mk_function_type(ctx, domain, 2, m_bool)),
                       ctx.constant("g", vexor_mk_function_type(ctx, &other, 1, other))};
        for (vexor_type t :
             {integer, other, vector, vexor_mk_type(ctx, "real"), vexor_mk_tuple_type(ctx, components, 2)})
            m_pool.push_back(ctx.constant("c" + std::to_string(m_pool.size()), t));
        m_pool.push_back(vexor_mk_true(ctx));
        m_pool.push_back(vexor_mk_false(ctx));
    }

    vexor_expr operator()() {
        for (unsigned n = m_random.between(1, 12); n > 0; --n) m_pool.push_back(constructed());
        return m_pool.back();
    }
    random_stream& random() { return m_random; }

private:
    vexor_expr any() { // newer ones more often
        auto const size = static_cast<unsigned>(m_pool.size());
        return m_pool[m_random.chance(50) ? m_random.below(size)
                                          : size - 1 - m_random.below(std::min(size, 6u))];
    }
    std::vector<vexor_expr> some() {
        std::vector<vexor_expr> result;
        for (unsigned n = m_random.chance(5) ? 40 : 1 + m_random.below(4); n > 0; --n)
            result.push_back(any());
        return result;
    }
    vexor_expr constructed();
    vexor_expr literal();

    api_context const& m_ctx;
    random_stream m_random;
    vexor_type m_bool = vexor_mk_type(m_ctx, "bool");
    std::vector<vexor_expr> m_pool, m_functions;
};

vexor_expr term_maker::literal() {
    static char const* const numbers[] = {"0",          "-1", "1/3", "-22/7", "12345678901234567890123",
                                          "-2147483649"};
    switch (m_random.below(4)) {
    case 0:
        return vexor_mk_num(m_ctx, static_cast<int>(m_random.next()));
    case 1:
        return vexor_mk_num_from_string(m_ctx, numbers[m_random.below(6)]);
    case 2:
        return vexor_mk_bv_constant(m_ctx, 1 + m_random.below(40), static_cast<unsigned>(m_random.next()));
    default: {
        int bits[70];
        for (int& b : bits) b = static_cast<int>(m_random.below(2));
        return vexor_mk_bv_constant_from_array(m_ctx, 1 + m_random.below(70), bits);
    }
    }
}

vexor_expr term_maker::constructed() {
    using nary = vexor_expr (*)(vexor_context, vexor_expr const*, unsigned);
    using binary = vexor_expr (*)(vexor_context, vexor_expr, vexor_expr);
    using unary = vexor_expr (*)(vexor_context, vexor_expr);
    using counted = vexor_expr (*)(vexor_context, vexor_expr, unsigned);
    static nary const narys[] = {vexor_mk_or,  vexor_mk_and, vexor_mk_sum,
                                 vexor_mk_sub, vexor_mk_mul, vexor_mk_tuple_literal};
    static binary const binaries[] = {vexor_mk_eq,     vexor_mk_diseq,  vexor_mk_lt,     vexor_mk_le,
                                      vexor_mk_gt,     vexor_mk_ge,     vexor_mk_bv_add, vexor_mk_bv_sub,
                                      vexor_mk_bv_mul, vexor_mk_bv_and, vexor_mk_bv_or,  vexor_mk_bv_xor,
                                      vexor_mk_bv_lt,  vexor_mk_bv_le,  vexor_mk_bv_gt,  vexor_mk_bv_ge,
                                      vexor_mk_bv_slt, vexor_mk_bv_sle, vexor_mk_bv_sgt, vexor_mk_bv_concat,
                                      vexor_mk_bv_sge};
    static unary const unaries[] = {vexor_mk_not, vexor_mk_bv_minus, vexor_mk_bv_not};
    static counted const counteds[] = {vexor_mk_bv_sign_extend,  vexor_mk_bv_shift_left0,
                                       vexor_mk_bv_shift_left1,  vexor_mk_bv_shift_right0,
                                       vexor_mk_bv_shift_right1, vexor_mk_bv_shift_righta};
    std::vector<vexor_expr> const args = some();
    auto const n = static_cast<unsigned>(args.size());
    vexor_expr const function = m_functions[m_random.below(static_cast<unsigned>(m_functions.size()))];
    switch (m_random.below(10)) {
    case 0:
    case 1:
        return narys[m_random.below(std::size(narys))](m_ctx, args.data(), n);
    case 2:
    case 3:
        return binaries[m_random.below(std::size(binaries))](m_ctx, any(), any());
    case 4:
        return unaries[m_random.below(std::size(unaries))](m_ctx, any());
    case 5:
        return counteds[m_random.below(std::size(counteds))](m_ctx, any(), m_random.below(100));
    case 6: {
        unsigned const low = m_random.below(50);
        return vexor_mk_bv_extract(m_ctx, low + m_random.below(50), low, any());
    }
    case 7:
        return vexor_mk_ite(m_ctx, any(), any(), any());
    case 8:
        if (m_random.chance(60)) return vexor_mk_app(m_ctx, function, args.data(), n);
        m_functions.push_back(vexor_mk_function_update(m_ctx, function, args.data(), n, any()));
        return m_functions.back();
    default:
        return literal();
    }
}

// The formula of the last "(assert ...)" line.
std::string asserted_text(std::string const& log) {
    std::size_t const start = log.rfind("(assert ") + 8;
    return log.substr(start, log.rfind(')') - start);
}

// The context is inconsistent: nobody looks at what is asserted.
TEST(api_log_terms, read_back_as_equal_terms) {
    std::uint64_t const seed = first_seed(1);
    for (unsigned round = 0; round < rounds(2000); ++round) {
        SCOPED_TRACE("VEXOR_SEED=" + std::to_string(seed + round));
        api_context ctx;
        vexor_assert(ctx, vexor_mk_false(ctx));
        term_maker make(ctx, seed + round);
        for (int i = 0; i < 3; ++i) {
            // Terms of any type stand in what is asserted.
            vexor_expr const term = make(), e = vexor_mk_eq(ctx, term, term);
            std::size_t const start = log_size();
            vexor_assert(ctx, e);
            std::string const text = asserted_text(log_since(start));
            ASSERT_EQ(log_since(start), "(assert " + text + ")\n");
            if (text.find("log!let!") != std::string::npos) continue; // below
            shared_ptr<expr> const read = read_expr_from_string(ctx.manager(), text.c_str());
            ASSERT_TRUE(read->equals(node(e))) << text << "\n" << to_text(read);
        }
    }
}

// Text that would repeat its parts too often binds them by lets: the formula is the same under all values.
TEST(api_log_terms, shared_parts) {
    std::uint64_t const seed = first_seed(1);
    for (unsigned round = 0; round < rounds(30); ++round) {
        SCOPED_TRACE("VEXOR_SEED=" + std::to_string(seed + round));
        random_stream random(seed + round);
        std::size_t const start = log_size();
        api_context ctx;
        std::vector<vexor_expr> const vars = {ctx.var("x"), ctx.var("y"), ctx.var("z")};
        std::vector<vexor_expr> pool = vars;
        auto recent = [&] { return pool[pool.size() - 1 - random.below(3)]; };
        for (int i = 0; i < 60; ++i) {
            vexor_expr const a = recent(), b = recent(), c = recent();
            vexor_expr const made[] = {vexor_mk_eq(ctx, a, b), vexor_mk_diseq(ctx, a, b), ctx.not_of(a),
                                       vexor_mk_ite(ctx, a, b, c), vexor_mk_ite(ctx, c, ctx.not_of(a), b)};
            pool.push_back(made[random.below(5)]);
        }
        std::vector<lbool> answers;
        for (unsigned values = 0; values < 8; ++values) {
            vexor_push(ctx);
            for (unsigned i = 0; i < 3; ++i)
                vexor_assert(ctx, (values >> i & 1) != 0 ? vars[i] : ctx.not_of(vars[i]));
            vexor_assert(ctx, pool.back());
            answers.push_back(vexor_check(ctx));
            vexor_pop(ctx);
        }
        std::string const log = log_since(start);
        EXPECT_LT(log.size(), 8 * 12000u);
        EXPECT_EQ(replayed_answers(log), answers) << log;
    }
}

TEST(api_log_terms, exponential_text_is_bound_by_lets) {
    api_context ctx;
    vexor_expr e = ctx.var("x");
    for (int i = 0; i < 200; ++i) e = vexor_mk_eq(ctx, e, e);
    std::size_t const start = log_size();
    vexor_assert(ctx, e);
    std::string const text = asserted_text(log_since(start));
    EXPECT_EQ(text.compare(0, 6, "(let ("), 0) << text;
    EXPECT_LT(text.size(), 20000u);
    shared_ptr<expr> const read = read_expr_from_string(ctx.manager(), text.c_str());
    EXPECT_TRUE(is_a<let_expr>(read.get()));
}

TEST(api_log_terms, types) {
    api_context ctx;
    std::size_t const start = log_size();
    vexor_type const t = vexor_mk_type(ctx, "T"), integer = vexor_mk_type(ctx, "int");
    vexor_type pair[] = {t, vexor_mk_bitvector_type(ctx, 1u << 24)};
    vexor_type* parts[] = {&pair[0], &pair[1]};
    vexor_type tuple = vexor_mk_tuple_type(ctx, parts, 2);
    vexor_type* one_part[] = {&tuple};
    vexor_type const domain[] = {tuple, integer, vexor_mk_function_type(ctx, &t, 1, integer)};
    vexor_mk_var_decl(ctx, "single", vexor_mk_tuple_type(ctx, one_part, 1));
    vexor_mk_var_decl(ctx, "f", vexor_mk_function_type(ctx, domain, 3, vexor_mk_type(ctx, "two words")));
    vexor_mk_var_decl(ctx, "n", vexor_mk_type(ctx, "nat"));
    vexor_check(ctx);
    EXPECT_EQ(replayed_answers(log_since(start)), std::vector<lbool>{1});
    EXPECT_NE(log_since(start).find("(define f::(-> (tuple T (bitvector 16777216)) int (-> T int) log!"),
              std::string::npos)
        << log_since(start);
}

} // namespace
