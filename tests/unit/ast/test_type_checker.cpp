// Every rule and message of the type checker.
#include "ast/types/type_checker.h"

#include "ast/node/ast_exceptions.h"
#include "ast/node/settings.h"
#include "support/small_stack.h"
#include "support/terms.h"

#include <gtest/gtest.h>

namespace vexor {
namespace {

using vexor_test::terms;
using vexor_test::to_text;

constexpr char const* ok = "well-typed";

class type_checker_test : public testing::Test {
protected:
    type_checker_test() { m.get_position_tracker().new_file("input"); }

    // The message of the checker; ok without one. The fault must stand at the node made at position 50.
    std::string check(ast* n) {
        try {
            type_check(n);
        } catch (type_checker_exception const& ex) {
            EXPECT_EQ(ex.get_position().m_pos, m.get_position(50).m_pos) << ex.what();
            return ex.what_core();
        }
        return ok;
    }
    // An application made at position 50, and its message.
    std::string check_op(char const* name, std::initializer_list<expr*> args) {
        t.at(50);
        application* a = t.op(name, args);
        t.at(10);
        return check(a);
    }
    // Makes one node at position 50.
    template <class F>
    auto at_fault(F make) {
        t.at(50);
        auto* n = make();
        t.at(10);
        return n;
    }
    expr* vec(unsigned size) { return t.bv(size, "1"); }

    ast_manager m;
    terms t{m};
    expr* p = t.constant("p", t.bool_type());
    expr* i = t.constant("i", t.int_type());
    expr* r = t.constant("r", t.real_type());
    expr* s = t.constant("s", t.declare_scalar("color", 3));
};

TEST_F(type_checker_test, the_message_begins_with_the_position) {
    application* a = at_fault([&] { return t.op("and", {p, i}); });
    try {
        type_check(a);
        FAIL();
    } catch (type_checker_exception const& ex) {
        EXPECT_STREQ(ex.what(), "[input, line(1), column(51), position(50)]: argument is not boolean.");
        // A message asked for inside another one does not disturb it.
        std::string first = ex.what();
        try {
            t.at(60);
            type_check(t.op("+", {p}));
        } catch (type_checker_exception const& inner) {
            EXPECT_STREQ(inner.what(),
                         "[input, line(1), column(61), position(60)]: argument is not a numeral.");
        }
        EXPECT_EQ(ex.what(), first);
    }
}

TEST_F(type_checker_test, connectives) {
    for (char const* name : {"and", "or"}) {
        EXPECT_EQ(check_op(name, {p, p, p}), ok);
        EXPECT_EQ(check_op(name, {p}), ok);
        EXPECT_EQ(check_op(name, {p, p, i}), "argument is not boolean.");
    }
    EXPECT_EQ(check_op("not", {p}), ok);
    EXPECT_EQ(check_op("not", {i}), "argument is not boolean.");
    EXPECT_EQ(check_op("not", {p, p}), "wrong number of arguments");
    EXPECT_EQ(check_op("implies", {p, p}), ok);
    EXPECT_EQ(check_op("implies", {p, vec(1)}), "argument is not boolean.");
    EXPECT_EQ(check_op("implies", {p}), "wrong number of arguments");
    EXPECT_EQ(check_op("implies", {p, p, p}), "wrong number of arguments");
}

TEST_F(type_checker_test, arithmetic) {
    for (char const* name : {"+", "-", "*"}) {
        EXPECT_EQ(check_op(name, {i, r, t.num("1/2")}), ok);
        EXPECT_EQ(check_op(name, {i}), ok);
        EXPECT_EQ(check_op(name, {i, p}), "argument is not a numeral.");
    }
    for (char const* name : {"/", "<", "<=", ">", ">="}) {
        EXPECT_EQ(check_op(name, {i, r}), ok);
        EXPECT_EQ(check_op(name, {vec(8), i}), "argument is not a numeral.");
        EXPECT_EQ(check_op(name, {i}), "wrong number of arguments");
        EXPECT_EQ(check_op(name, {i, i, i}), "wrong number of arguments");
    }
    expr* n = t.constant("n", t.nat_type());
    expr* x = t.constant("x", t.number_type());
    EXPECT_EQ(check_op("+", {n, x, t.constant("sub", t.subrange(t.num("0"), t.num("1")))}), ok);
    EXPECT_EQ(check_op("int_pred", {r}), ok);
    EXPECT_EQ(check_op("real_pred", {x}), ok);
    EXPECT_EQ(check_op("int_pred", {p}), "invalid function argument, type mismatch.");
    EXPECT_EQ(check_op("int_pred", {i, i}), "wrong number of arguments");
}

TEST_F(type_checker_test, equality) {
    for (char const* name : {"=", "/="}) {
        EXPECT_EQ(check_op(name, {r, t.num("1")}), ok);
        EXPECT_EQ(check_op(name, {t.num("1"), r}), ok);
        EXPECT_EQ(check_op(name, {p, t.mk_true()}), ok);
        EXPECT_EQ(check_op(name, {s, s}), ok);
        EXPECT_EQ(check_op(name, {s, i}), "incompatible types in equality.");
        EXPECT_EQ(check_op(name, {vec(8), vec(4)}), "incompatible types in equality.");
        EXPECT_EQ(check_op(name, {p, i}), "incompatible types in equality.");
        EXPECT_EQ(check_op(name, {p}), "wrong number of arguments");
        EXPECT_EQ(check_op(name, {p, p, p}), "wrong number of arguments");
    }
}

TEST_F(type_checker_test, if_then_else) {
    EXPECT_EQ(check_op("ite", {p, i, r}), ok);
    EXPECT_EQ(check_op("ite", {i, i, r}), "condition of if-then-else expression is not a boolean.");
    EXPECT_EQ(check_op("ite", {p, i, p}), "incompatible types in then/else braches of if-then-else.");
    EXPECT_EQ(check_op("ite", {p, i}), "wrong number of arguments");
    EXPECT_EQ(check_op("ite", {p, i, i, i}), "wrong number of arguments");
}

TEST_F(type_checker_test, applications) {
    expr* f = t.constant("f", t.function_type({t.int_type(), t.bool_type()}, t.real_type()));
    auto check_app = [&](expr* fun, std::initializer_list<expr*> args) {
        return check(at_fault([&] { return t.app(fun, args); }));
    };
    EXPECT_EQ(check_app(f, {i, p}), ok);
    EXPECT_EQ(check_app(f, {r, p}), ok);
    EXPECT_EQ(check_app(f, {p, p}), "invalid function argument, type mismatch.");
    EXPECT_EQ(check_app(f, {i}), "wrong number of arguments");
    EXPECT_EQ(check_app(f, {i, p, p}), "wrong number of arguments");
    EXPECT_EQ(check_app(i, {i}), "function expected.");
    EXPECT_EQ(check_app(t.mk_true(), {i}), "function expected.");
    var_decl* x = t.variable("x", t.bool_type());
    expr* lambda = t.lambda({x}, t.use(x));
    EXPECT_EQ(check_app(lambda, {p}), ok);
    EXPECT_EQ(check_app(lambda, {i}), "invalid function argument, type mismatch.");
    EXPECT_EQ(check_app(t.op("ite", {p, f, f}), {i, p}), ok);
    EXPECT_EQ(check_app(t.op("ite", {p, f, f}), {i}), "wrong number of arguments");
    EXPECT_EQ(check_app(t.update(f, {i, p}, r), {i, p}), ok);
    EXPECT_EQ(check_app(t.update(f, {i, p}, r), {p, p}), "invalid function argument, type mismatch.");
    t.declare_type("fun", t.function_type({t.int_type()}, t.int_type()));
    EXPECT_EQ(check_app(t.constant("g", t.named_type("fun")), {i}), ok);
}

TEST_F(type_checker_test, bitvector_pairs) {
    for (char const* name :
         {"bv-add",  "bv-sub", "bv-mul",  "bv-and",  "bv-or",   "bv-xor",  "bv-lt",   "bv-le",  "bv-gt",
          "bv-ge",   "sbv-lt", "sbv-le",  "sbv-gt",  "sbv-ge",  "bv-udiv", "bv-urem", "bv-shl", "bv-lshr",
          "bv-nand", "bv-nor", "bv-xnor", "bv-comp", "bv-sdiv", "bv-srem", "bv-smod", "bv-ashr"}) {
        SCOPED_TRACE(name);
        EXPECT_EQ(check_op(name, {vec(8), vec(8)}), ok);
        EXPECT_EQ(check_op(name, {vec(8), vec(16)}), "bitvectors have different sizes.");
        EXPECT_EQ(check_op(name, {i, vec(16)}), "argument is not a bitvector.");
        EXPECT_EQ(check_op(name, {vec(16), p}), "argument is not a bitvector.");
        EXPECT_EQ(check_op(name, {vec(16)}), "wrong number of arguments");
        EXPECT_EQ(check_op(name, {vec(8), vec(8), vec(8)}), "wrong number of arguments");
    }
}

TEST_F(type_checker_test, single_bitvectors) {
    for (char const* name : {"bv-not", "bv-neg", "bv-redor", "bv-redand"}) {
        SCOPED_TRACE(name);
        EXPECT_EQ(check_op(name, {vec(8)}), ok);
        EXPECT_EQ(check_op(name, {i}), "argument is not a bitvector.");
        EXPECT_EQ(check_op(name, {vec(8), vec(8)}), "wrong number of arguments");
    }
    EXPECT_EQ(check_op("bv-concat", {vec(8), vec(3), vec(1)}), ok);
    EXPECT_EQ(check_op("bv-concat", {vec(8), i}), "argument is not a bitvector.");
}

TEST_F(type_checker_test, extraction) {
    expr* v = vec(8);
    auto num = [&](char const* n) { return t.num(n); };
    EXPECT_EQ(check_op("bv-extract", {num("7"), num("0"), v}), ok);
    EXPECT_EQ(check_op("bv-extract", {num("0"), num("7"), v}), ok);
    EXPECT_EQ(check_op("bv-extract", {num("3"), num("3"), v}), ok);
    for (char const* bad : {"8", "-1", "1/2", "4294967295", "4294967296", "99999999999999999999"}) {
        SCOPED_TRACE(bad);
        EXPECT_EQ(check_op("bv-extract", {num(bad), num("0"), v}), "invalid bitvector extract.");
        EXPECT_EQ(check_op("bv-extract", {num("0"), num(bad), v}), "invalid bitvector extract.");
    }
    EXPECT_EQ(check_op("bv-extract", {num("3"), v, v}), "argument must be a number.");
    EXPECT_EQ(check_op("bv-extract", {i, num("3"), v}), "argument must be a number.");
    EXPECT_EQ(check_op("bv-extract", {num("3"), num("3"), i}), "argument is not a bitvector.");
    EXPECT_EQ(check_op("bv-extract", {num("3"), v}), "wrong number of arguments");
}

TEST_F(type_checker_test, shifts_and_rotations) {
    for (char const* name : {"bv-shift-left0", "bv-shift-left1", "bv-shift-right0", "bv-shift-right1",
                             "bv-shift-righta", "bv-rotate_left", "bv-rotate_right"}) {
        SCOPED_TRACE(name);
        EXPECT_EQ(check_op(name, {vec(8), t.num("0")}), ok);
        EXPECT_EQ(check_op(name, {vec(8), t.num("8")}), ok);
        for (char const* bad : {"9", "-1", "1/2", "4294967296"})
            EXPECT_EQ(check_op(name, {vec(8), t.num(bad)}), "invalid shift operation.") << bad;
        EXPECT_EQ(check_op(name, {vec(8), i}), "argument must be a number.");
        EXPECT_EQ(check_op(name, {t.num("1"), t.num("1")}), "argument is not a bitvector.");
        EXPECT_EQ(check_op(name, {vec(8)}), "wrong number of arguments");
    }
}

TEST_F(type_checker_test, repetition_and_extension) {
    EXPECT_EQ(check_op("bv-repeat", {vec(8), t.num("1")}), ok);
    for (char const* bad : {"0", "-1", "1/2", "2097153", "536870912", "4294967297"})
        EXPECT_EQ(check_op("bv-repeat", {vec(8), t.num(bad)}), "invalid repeat operation.") << bad;
    EXPECT_EQ(check_op("bv-repeat", {vec(8), i}), "argument must be a number.");
    EXPECT_EQ(check_op("bv-repeat", {i, t.num("1")}), "argument is not a bitvector.");
    EXPECT_EQ(check_op("bv-repeat", {vec(8)}), "wrong number of arguments");
    for (char const* name : {"bv-sign-extend", "bv-zero-extend"}) {
        SCOPED_TRACE(name);
        EXPECT_EQ(check_op(name, {vec(8), t.num("0")}), ok);
        EXPECT_EQ(check_op(name, {vec(8), t.num("16")}), ok);
        EXPECT_EQ(check_op(name, {vec(8), i}), "argument must be a number.");
        EXPECT_EQ(check_op(name, {i, t.num("1")}), "argument is not a bitvector.");
        for (char const* bad : {"-1", "1/2", "16777209", "4294967295", "4294967296"})
            EXPECT_EQ(check_op(name, {vec(8), t.num(bad)}), "invalid extend operation.") << bad;
        EXPECT_EQ(check_op(name, {vec(8)}), "wrong number of arguments");
    }
}

TEST_F(type_checker_test, sizes_of_bitvectors) {
    EXPECT_EQ(check(t.bv_type(1)), ok);
    EXPECT_EQ(check(t.bv_type(1U << 24)), ok);
    for (unsigned size : {0U, (1U << 24) + 1, 4294967295U}) {
        type* bad = at_fault([&] { return t.bv_type(size); });
        EXPECT_EQ(check(bad), "invalid bitvector size.") << size;
        EXPECT_EQ(check(t.variable("x", bad)), "invalid bitvector size.") << size;
    }
    EXPECT_EQ(check(at_fault([&] { return t.bv(0, "0"); })), "invalid bitvector size.");
    EXPECT_EQ(check(at_fault([&] { return t.bv((1U << 24) + 1, "0"); })), "invalid bitvector size.");
}

TEST_F(type_checker_test, quantifiers) {
    var_decl* x = t.variable("x", t.int_type());
    EXPECT_EQ(check(t.forall({x}, t.op("<", {t.use(x), i}))), ok);
    char const* message = "body of quandified expression is not boolean.";
    EXPECT_EQ(check(at_fault([&] { return t.forall({x}, i); })), message);
    EXPECT_EQ(check(at_fault([&] { return t.exists({x}, i); })), message);
    EXPECT_EQ(check(t.lambda({x}, i)), ok);
    // Faults below binders and in the types of variables.
    EXPECT_EQ(check(t.lambda({x}, at_fault([&] { return t.op("not", {i}); }))), "argument is not boolean.");
    type* bad = at_fault([&] { return t.subrange(p, i); });
    EXPECT_EQ(check(t.forall({t.variable("y", bad)}, p)), "invalid subrange.");
}

TEST_F(type_checker_test, definitions) {
    auto define = [&](type* declared, expr* definition) {
        return at_fault([&] { return t.make<const_decl>(t.id("c"), declared, definition, 50); });
    };
    char const* message = "invalid constant declaration, incompatible types.";
    EXPECT_EQ(check(define(t.real_type(), i)), ok);
    EXPECT_EQ(check(define(t.bool_type(), i)), message);
    var_decl* x = t.variable("x", t.int_type());
    type* int_to_int = t.function_type({t.int_type()}, t.int_type());
    EXPECT_EQ(check(define(int_to_int, t.lambda({x}, t.use(x)))), ok);
    EXPECT_EQ(check(define(int_to_int, t.lambda({x}, p))), message);
    EXPECT_EQ(check(t.make<const_decl>(t.id("d"), t.int_type(), -1)), ok);
}

TEST_F(type_checker_test, local_definitions) {
    auto let_of = [&](type* declared, expr* definition) {
        let_decl* d = at_fault([&] { return t.let_variable("x", declared, definition); });
        return t.let({d}, p);
    };
    EXPECT_EQ(check(let_of(nullptr, i)), ok);
    EXPECT_EQ(check(let_of(t.real_type(), i)), ok);
    EXPECT_EQ(check(let_of(t.bool_type(), i)), "invalid let declaration, incompatible types.");
    // Checked twice: the first check gave the variable a type.
    expr* e = let_of(nullptr, p);
    e->get_type();
    EXPECT_EQ(check(e), ok);
    EXPECT_EQ(check(e), ok);
}

TEST_F(type_checker_test, subtypes) {
    EXPECT_EQ(check(t.subrange(t.num("0"), r)), ok);
    EXPECT_EQ(check(at_fault([&] { return t.subrange(p, i); })), "invalid subrange.");
    EXPECT_EQ(check(at_fault([&] { return t.subrange(i, s); })), "invalid subrange.");
    var_decl* x = t.variable("x", t.int_type());
    expr* positive = t.op("<", {t.num("0"), t.use(x)});
    EXPECT_EQ(check(t.make<subtype>(x, positive, -1)), ok);
    EXPECT_EQ(check(t.make<subtype>(x, t.use(x), 50)), "invalid subtype, the predicate is not boolean.");
}

TEST_F(type_checker_test, tuples) {
    expr* pair = t.tuple({i, p});
    EXPECT_EQ(check(t.select(pair, 1U)), ok);
    EXPECT_EQ(check(at_fault([&] { return t.select(pair, 2U); })), "invalid tuple selection.");
    EXPECT_EQ(check(at_fault([&] { return t.select(i, 0U); })), "tuple expression expected.");
    EXPECT_EQ(check(t.update(pair, 0, r)), ok);
    EXPECT_EQ(check(at_fault([&] { return t.update(pair, 2, p); })), "invalid tuple selection.");
    EXPECT_EQ(check(at_fault([&] { return t.update(pair, -1, p); })), "invalid tuple selection.");
    EXPECT_EQ(check(at_fault([&] { return t.update(i, 0, p); })), "tuple expression expected.");
    EXPECT_EQ(
        check(at_fault([&] { return t.update(pair, 1, i); })),
        "invalid tuple update, the new value type is incompatible with the specified tuple position type.");
}

TEST_F(type_checker_test, records) {
    expr* rec = t.record({{"a", i}, {"b", p}});
    EXPECT_EQ(check(t.select(rec, "b")), ok);
    EXPECT_EQ(check(at_fault([&] { return t.select(rec, "c"); })),
              "invalid record selection, unknown field.");
    EXPECT_EQ(check(at_fault([&] { return t.select(i, "a"); })), "record expression expected.");
    EXPECT_EQ(check(t.update(rec, "a", r)), ok);
    EXPECT_EQ(check(at_fault([&] { return t.update(rec, "c", p); })),
              "invalid record update, unknown field.");
    EXPECT_EQ(check(at_fault([&] { return t.update(i, "a", p); })), "record expression expected.");
    EXPECT_EQ(check(at_fault([&] { return t.update(rec, "a", p); })),
              "invalid record update, the new value type is incompatible with field type.");
    EXPECT_THROW(type_check(t.record({{"a", i}, {"a", p}})), record_type_with_duplicate_fields_exception);
}

TEST_F(type_checker_test, function_updates) {
    expr* f = t.constant("f", t.function_type({t.int_type(), t.bool_type()}, t.real_type()));
    auto update = [&](expr* fun, std::initializer_list<expr*> args, expr* value) {
        return check(at_fault([&] { return t.update(fun, args, value); }));
    };
    EXPECT_EQ(update(f, {i, p}, i), ok);
    EXPECT_EQ(update(i, {i, p}, i), "function expected.");
    EXPECT_EQ(update(f, {i}, i), "invalid function update, wrong number of arguments.");
    EXPECT_EQ(update(f, {i, i}, i), "invalid function update index, type mismatch.");
    EXPECT_EQ(update(f, {i, p}, p), "invalid function update new value, type mismatch.");
}

TEST_F(type_checker_test, children_come_first) {
    expr* inner = at_fault([&] { return t.op("+", {p}); });
    EXPECT_EQ(check(t.op("and", {inner, i})), "argument is not a numeral.");
    EXPECT_EQ(check(t.tuple({i, inner})), "argument is not a numeral.");
    EXPECT_EQ(check(t.record({{"a", inner}})), "argument is not a numeral.");
    EXPECT_EQ(check(t.let({t.let_variable("x", nullptr, inner)}, p)), "argument is not a numeral.");
}

TEST_F(type_checker_test, declarations_are_checked_when_they_are_added) {
    bool before = std::exchange(g_type_check, true);
    unsigned names = m.num_const_names();
    const_decl* bad = t.make<const_decl>(t.id("bad"), t.bool_type(), i, -1);
    EXPECT_THROW(m.add_global_const_decl(bad, true), type_checker_exception);
    EXPECT_FALSE(m.is_global_name_expr(ustring("bad")));
    EXPECT_EQ(m.num_const_names(), names);
    type_decl* bad_type = t.make<type_decl>(t.id("bad_type"), t.bv_type(0), -1);
    EXPECT_THROW(m.add_global_type_decl(bad_type), type_checker_exception);
    EXPECT_FALSE(m.is_type_name(ustring("bad_type")));
    t.constant("good", t.int_type());
    EXPECT_TRUE(m.is_global_name_expr(ustring("good")));
    // The predefined world is well-typed.
    m.reset();
    g_type_check = before;
}

// Shared nodes are checked once, deep ones on a small stack.
TEST_F(type_checker_test, deep_and_shared_terms) {
    vexor_test::on_small_stack([this] {
        shared_ptr<expr> negation = p;
        shared_ptr<expr> sum = t.num("1");
        shared_ptr<expr> nested_let = t.num("1");
        shared_ptr<type> nested_type = t.int_type();
        shared_ptr<type> nested_tuple = t.int_type();
        for (int k = 0; k < 100000; ++k) {
            negation = mk<application>(m.mk_name<not_decl>(), negation, -1);
            sum = mk<application>(m.mk_name<add_decl>(), t.num("1"), sum, -1);
            shared_ptr<let_decl> d =
                mk<let_decl>(mk<identifier>(&m, ustring("x"), -1), t.int_type(), nested_let, -1);
            let_decl* ds[] = {d};
            nested_let = mk<let_expr>(ds, 1U, d->create_name_expr(-1), -1);
            nested_type = vexor::function_type::construct_unary(t.int_type(), nested_type, -1);
            shared_ptr<var_decl> v = mk<var_decl>(static_cast<identifier*>(nullptr), nested_tuple, -1);
            var_decl* vs[] = {v};
            nested_tuple = mk<tuple_type>(&m, vs, 1U, -1);
        }
        EXPECT_EQ(check(negation), ok);
        EXPECT_EQ(check(sum), ok);
        EXPECT_EQ(check(nested_let), ok);
        EXPECT_EQ(check(nested_type), ok);
        EXPECT_EQ(check(nested_tuple), ok);
        shared_ptr<expr> shared = p;
        for (int k = 0; k < 200; ++k) shared = mk<application>(m.mk_name<and_decl>(), shared, shared, -1);
        EXPECT_EQ(check(shared), ok);
    });
}

} // namespace
} // namespace vexor
