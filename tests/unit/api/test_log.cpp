// The log: one line a call, in order, and the same answers when it is executed.
#include "api_context.h"
#include "log_replay.h"

#include "ast/node/nodes.h"
#include "ast/node/settings.h"
#include "support/command_session.h"
#include "support/random.h"
#include "support/setting_guard.h"

#include <climits>
#include <gtest/gtest.h>

namespace {

using namespace vexor;
using namespace vexor_test;
using answers = std::vector<lbool>;

TEST(api_log, one_line_a_call) {
    api_context ctx;
    vexor_expr const x = ctx.var("x");
    std::size_t const start = log_size();
    vexor_push(ctx);
    vexor_assert(ctx, x);
    vexor_check(ctx);
    vexor_pop(ctx);
    EXPECT_EQ(log_since(start), "(push)\n(assert x)\n(check)\n(pop)\n");
    std::size_t const next = log_size();
    vexor_expr const y = ctx.var("y");
    vexor_mk_var_decl(ctx, "n", vexor_mk_type(ctx, "int"));
    vexor_mk_fresh_bool_var(ctx);
    assertion_id const first = vexor_assert_retractable(ctx, ctx.or_of({x, y}));
    vexor_assert_weighted(ctx, ctx.not_of(y), 2147483648);
    vexor_assert_weighted(ctx, x, INT64_MAX);
    vexor_retract(ctx, first);
    vexor_retract(ctx, INT_MIN);
    vexor_max_sat(ctx);
    vexor_reset(ctx);
    EXPECT_EQ(log_since(next), "(define y::bool)\n(define n::int)\n(define v!1::bool)\n(assert+ (or x y))\n"
                               "(assert+ (not y) 2147483648)\n(assert+ x 9223372036854775807)\n(retract " +
                                   std::to_string(first) + ")\n(retract -2147483648)\n(max-sat)\n(reset)\n");
}

// Terms alone, and questions about models and names, are no steps.
TEST(api_log, only_what_a_replay_needs) {
    api_context ctx;
    vexor_expr const x = ctx.var("x");
    vexor_assert(ctx, x);
    vexor_check(ctx);
    std::size_t const start = log_size();
    ctx.not_of(ctx.or_of({x, vexor_mk_true(ctx)}));
    vexor_evaluate_in_model(vexor_get_model(ctx), x);
    ctx.value(x);
    vexor_interrupt(ctx);
    ctx.core();
    vexor_mk_type(ctx, "bool");
    ctx.var("x");
    EXPECT_EQ(log_since(start), "");
}

TEST(api_log, a_failed_call_is_a_comment) {
    api_context ctx;
    vexor_expr const i = ctx.constant("i", vexor_mk_type(ctx, "int"));
    vexor_expr const positive = vexor_mk_gt(ctx, i, vexor_mk_num(ctx, 0));
    std::size_t const start = log_size();
    EXPECT_THROW(vexor_assert(ctx, positive), std::exception);
    EXPECT_THROW(vexor_assert_retractable(ctx, positive), std::exception);
    EXPECT_THROW(vexor_assert_weighted(ctx, positive, 3), std::exception);
    EXPECT_THROW(vexor_assert_weighted(ctx, ctx.not_of(vexor_mk_true(ctx)), 0), std::exception);
    EXPECT_THROW(vexor_mk_bool_var_decl(ctx, "i"), std::exception);
    vexor_check(ctx);
    EXPECT_EQ(log_since(start), "; failed: (assert (> i 0))\n; failed: (assert+ (> i 0))\n"
                                "; failed: (assert+ (> i 0) 3)\n; failed: (assert+ (not true) 0)\n(check)\n");
}

// An exception that is under way when a call is made, as in a destructor, is not that of the call.
TEST(api_log, calls_during_another_exception) {
    api_context ctx;
    std::size_t const start = log_size();
    struct pops {
        vexor_context m_ctx;
        ~pops() { vexor_pop(m_ctx); }
    };
    try {
        vexor_push(ctx);
        pops const at_the_end{ctx};
        throw 1;
    } catch (int) {
    }
    EXPECT_EQ(log_since(start), "(push)\n(pop)\n");
}

// Commands of each kind on a context that dies and comes to life again.
TEST(api_log, replay_of_scopes_and_weights) {
    std::size_t const start = log_size();
    api_context ctx;
    answers expected;
    auto check = [&] { expected.push_back(vexor_check(ctx)); };
    auto max_sat = [&] { expected.push_back(vexor_max_sat(ctx)); };
    vexor_expr const x = ctx.var("x");
    assertion_id const keep_x = vexor_assert_weighted(ctx, x, INT64_MAX);
    check();
    vexor_push(ctx);
    vexor_assert(ctx, ctx.not_of(x));
    check();
    max_sat();
    vexor_push(ctx);
    vexor_assert(ctx, x);
    check();
    vexor_push(ctx);
    vexor_assert_retractable(ctx, ctx.var("y"));
    vexor_retract(ctx, keep_x);
    max_sat();
    vexor_pop(ctx);
    vexor_pop(ctx);
    vexor_retract(ctx, keep_x);
    check();
    vexor_pop(ctx);
    check();
    vexor_assert(ctx, vexor_mk_false(ctx));
    vexor_push(ctx);
    vexor_pop(ctx);
    check();
    vexor_reset(ctx);
    vexor_mk_type(ctx, "T");
    vexor_assert(ctx, ctx.var("x"));
    check();
    EXPECT_EQ(expected, (answers{1, -1, 1, -1, -1, 1, 1, -1, 1}));
    EXPECT_EQ(replayed_answers(log_since(start)), expected);
}

std::vector<std::string> const odd_names = {"",
                                            " ",
                                            "a b",
                                            "\n",
                                            "a\nb",
                                            "\t",
                                            "\"",
                                            "a\"b",
                                            "'",
                                            "(",
                                            ")",
                                            "()",
                                            ";",
                                            "; x",
                                            "a;b",
                                            ":",
                                            "::",
                                            "a::b",
                                            ":x",
                                            "x:",
                                            "x::",
                                            "5",
                                            "-5",
                                            "1/2",
                                            "0b101",
                                            "0.5",
                                            "5x",
                                            "-",
                                            "->",
                                            "+",
                                            "=>",
                                            "assert",
                                            "define",
                                            "true!",
                                            "define-type",
                                            "and!",
                                            "let",
                                            "forall",
                                            "lambda",
                                            "mk-bv",
                                            "mk-tuple",
                                            "update",
                                            "select",
                                            "if",
                                            "bool",
                                            "int",
                                            "real",
                                            "nat",
                                            "number",
                                            "any",
                                            "scalar",
                                            "tuple",
                                            "record",
                                            "div",
                                            "mod",
                                            "log!1",
                                            "log!2",
                                            "log!",
                                            "log!let!1",
                                            "v!1",
                                            "v!7",
                                            "|x|",
                                            "|",
                                            "\\",
                                            "#x",
                                            "#b1",
                                            "@",
                                            "a,b",
                                            "[x]",
                                            "{",
                                            "x'",
                                            "\xc3\xa4",
                                            "\xff",
                                            "\x01",
                                            "\x7f",
                                            "check",
                                            "max-sat",
                                            "reset",
                                            "exit",
                                            "include",
                                            "echo",
                                            "subtype",
                                            "subrange",
                                            "bitvector",
                                            "datatype",
                                            "pop",
                                            "p!1",
                                            "x!1",
                                            "ite",
                                            "if-then-else",
                                            "check ",
                                            " check",
                                            "a\\",
                                            "a\r",
                                            "\r\n",
                                            "not!",
                                            "lpb",
                                            "dump-context",
                                            "b$",
                                            "%",
                                            "~x",
                                            "!"};

// Variables and types whose names the language does not take as they are: each is told from the others.
bool is_operator(api_context const& ctx, std::string const& name) {
    const_decl const* const d = ctx.manager()->find_const_decl(ustring(name.c_str()));
    return d != nullptr && d->is_builtin();
}

TEST(api_log, replay_of_odd_names) {
    std::size_t const start = log_size();
    api_context ctx;
    answers expected;
    std::vector<vexor_expr> vars;
    for (std::string const& name : odd_names) {
        if (is_operator(ctx, name)) continue; // as "-"
        vars.push_back(ctx.var(name));
        ASSERT_NO_THROW(ctx.constant("of type " + name, vexor_mk_type(ctx, name.c_str()))) << name;
    }
    ASSERT_GT(vars.size(), 90u);
    // A chain that is unsatisfiable with both ends, and satisfiable without any of its links.
    for (std::size_t i = 0; i + 1 < vars.size(); ++i)
        vexor_assert_retractable(ctx, ctx.or_of({ctx.not_of(vars[i]), vars[i + 1]}));
    vexor_assert(ctx, vars.front());
    expected.push_back(vexor_check(ctx));
    for (std::size_t i = 0; i < vars.size(); ++i) {
        vexor_push(ctx);
        vexor_assert(ctx, ctx.not_of(vars[i]));
        expected.push_back(vexor_check(ctx));
        vexor_pop(ctx);
    }
    EXPECT_EQ(replayed_answers(log_since(start)), expected);
}

// Random texts as names.
TEST(api_log, replay_of_random_names) {
    std::uint64_t const seed = first_seed(1);
    for (unsigned round = 0; round < rounds(200); ++round) {
        SCOPED_TRACE("VEXOR_SEED=" + std::to_string(seed + round));
        random_stream random(seed + round);
        std::size_t const start = log_size();
        api_context ctx;
        std::vector<vexor_expr> vars;
        for (int i = 0; i < 6; ++i) {
            std::string name;
            for (unsigned n = random.below(4); n > 0; --n)
                name += random.chance(60) ? "ab:;()\"!-+|/ \n#0"[random.below(16)]
                                          : static_cast<char>(random.between(1, 255));
            if (is_operator(ctx, name)) name += "?";
            vars.push_back(ctx.var(name));
            if (random.chance(30))
                ctx.constant("typed " + std::to_string(i), vexor_mk_type(ctx, ("T" + name).c_str()));
        }
        answers expected;
        for (int i = 0; i < 10; ++i) {
            vexor_expr args[3];
            for (vexor_expr& a : args) {
                a = vars[random.below(6)];
                if (vexor_get_var_decl(a) == nullptr || random.chance(50)) a = ctx.not_of(a);
            }
            try {
                vexor_assert(ctx, vexor_mk_or(ctx, args, 1 + random.below(3)));
            } catch (std::exception const&) { // the name was that of an operator
            }
            expected.push_back(vexor_check(ctx));
        }
        ASSERT_EQ(replayed_answers(log_since(start)), expected) << log_since(start);
    }
}

// What a fresh variable is called depends on the names of the program.
TEST(api_log, replay_of_fresh_variables) {
    std::size_t const start = log_size();
    api_context ctx;
    vexor_mk_bool_var_decl(ctx, "v!2");
    vexor_expr const first = vexor_mk_fresh_bool_var(ctx), second = vexor_mk_fresh_bool_var(ctx);
    vexor_assert(ctx, first);
    vexor_assert(ctx, ctx.not_of(second));
    vexor_assert(ctx, ctx.var("v!2"));
    vexor_check(ctx);
    EXPECT_EQ(replayed_answers(log_since(start)), answers{1});
}

// The whole file at once.
TEST(api_log, replay_through_the_reader) {
    std::size_t const start = log_size();
    {
        api_context ctx;
        vexor_expr const x = ctx.var("two words"), y = ctx.var("y");
        vexor_assert(ctx, vexor_mk_diseq(ctx, x, y));
        vexor_check(ctx);
        assertion_id const id = vexor_assert_retractable(ctx, vexor_mk_eq(ctx, x, y));
        vexor_check(ctx);
        vexor_retract(ctx, id);
        vexor_check(ctx);
        vexor_assert_weighted(ctx, vexor_mk_eq(ctx, y, x), 4294967296);
        vexor_max_sat(ctx);
        EXPECT_EQ(vexor_get_cost(vexor_get_model(ctx)), 4294967296);
    }
    command_session session;
    session.m_context.set_evidence(true);
    std::string const out = session.run(log_since(start));
    std::size_t const first = out.find("sat\n");
    ASSERT_NE(first, std::string::npos) << out;
    EXPECT_NE(out.find("unsat\nunsat core ids: "), std::string::npos) << out;
    EXPECT_NE(out.find("cost: 4294967296\n"), std::string::npos) << out;
    EXPECT_EQ(out.find("!["), std::string::npos) << out; // no failure
}

} // namespace
