// Printed forms of nodes, as trees and with their sharing.
#include "ast/print/pp_dag_visitor.h"
#include "support/small_stack.h"
#include "support/terms.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <sstream>

namespace vexor {
namespace {

using vexor_test::terms;
using vexor_test::to_text;

std::string displayed(ast const* n) {
    std::ostringstream out;
    out << *n;
    return out.str();
}

std::string as_dag(ast const* n, bool definitions_first = false) {
    std::ostringstream out;
    n->display_as_dag(out, definitions_first);
    return out.str();
}

class pp_term : public testing::Test {
protected:
    ast_manager m;
    terms t{m};
    expr* p = t.constant("p", t.bool_type());
    expr* i = t.constant("i", t.int_type());
};

TEST_F(pp_term, constants) {
    EXPECT_EQ(displayed(t.num("0")), "0");
    EXPECT_EQ(displayed(t.num("-12")), "-12");
    EXPECT_EQ(displayed(t.num("-3/4")), "-3/4");
    EXPECT_EQ(displayed(t.num("123456789012345678901234567890")), "123456789012345678901234567890");
    EXPECT_EQ(displayed(t.bv(8, "6")), "0b00000110");
    EXPECT_EQ(displayed(t.bv(1, "1")), "0b1");
    EXPECT_EQ(displayed(t.bv(0, "0")), "0b");
    EXPECT_EQ(displayed(t.bv(40, "824633720833")), "0b1100000000000000000000000000000000000001");
    EXPECT_EQ(displayed(t.mk_true()), "true");
    EXPECT_EQ(displayed(t.mk_false()), "false");
    EXPECT_EQ(displayed(t.make<typed_constant>(t.declare_type("u"), 7, -1)), "7");
}

TEST_F(pp_term, names_and_applications) {
    EXPECT_EQ(displayed(i), "i");
    expr* f = t.constant("f", t.function_type({t.int_type(), t.bool_type()}, t.int_type()));
    EXPECT_EQ(displayed(t.app(f, {i, p})), "(f i p)");
    var_decl* x = t.variable("x", t.int_type());
    EXPECT_EQ(displayed(t.app(t.lambda({x}, t.use(x)), {i})), "((lambda (x::int) x) i)");
    fresh_var_decl* fresh = t.make<fresh_var_decl>(t.int_type(), -1);
    EXPECT_EQ(displayed(t.use(fresh)), "aux!" + std::to_string(fresh->get_id()));
    EXPECT_EQ(displayed(fresh), "aux!" + std::to_string(fresh->get_id()) + "::int");
}

TEST_F(pp_term, operators_have_the_spelling_of_the_native_language) {
    for (char const* name : {"and", "or", "=", "/=", "+", "-", "*", "/", "<", "<=", ">", ">=", "bv-add",
                             "bv-neg", "bv-rotate_left", "bv-sign-extend", "real_pred", "int_pred"})
        EXPECT_EQ(displayed(t.op(name, {i, i})), "(" + std::string(name) + " i i)");
    EXPECT_EQ(displayed(t.op("not", {p})), "(not p)");
    EXPECT_EQ(displayed(t.op("ite", {p, i, i})), "(ite p i i)");
    EXPECT_EQ(displayed(t.op("implies", {p, p})), "(=> p p)");
    EXPECT_EQ(displayed(t.op("sbv-lt", {i, i})), "(bv-slt i i)");
    EXPECT_EQ(displayed(t.op("sbv-le", {i, i})), "(bv-sle i i)");
    EXPECT_EQ(displayed(t.op("sbv-gt", {i, i})), "(bv-sgt i i)");
    EXPECT_EQ(displayed(t.op("sbv-ge", {i, i})), "(bv-sge i i)");
}

TEST_F(pp_term, an_extraction_prints_its_high_index_first) {
    expr* v = t.constant("v", t.bv_type(8));
    EXPECT_EQ(displayed(t.op("bv-extract", {t.num("6"), t.num("2"), v})), "(bv-extract 6 2 v)");
    EXPECT_EQ(displayed(t.op("bv-extract", {t.num("2"), t.num("6"), v})), "(bv-extract 6 2 v)");
    EXPECT_EQ(displayed(t.op("bv-extract", {t.num("3"), t.num("3"), v})), "(bv-extract 3 3 v)");
    // What is no extraction prints as it stands.
    EXPECT_EQ(displayed(t.op("bv-extract", {i, t.num("2"), v})), "(bv-extract i 2 v)");
    EXPECT_EQ(displayed(t.op("bv-extract", {t.num("2"), v})), "(bv-extract 2 v)");
}

TEST_F(pp_term, binders) {
    var_decl* x = t.variable("x", t.int_type());
    var_decl* y = t.variable("y", t.bool_type());
    EXPECT_EQ(displayed(t.lambda({x, y}, t.use(x))), "(lambda (x::int y::bool) x)");
    EXPECT_EQ(displayed(t.forall({y}, t.use(y))), "(forall (y::bool) y)");
    EXPECT_EQ(displayed(t.exists({x, y}, t.use(y))), "(exists (x::int y::bool) y)");
    EXPECT_EQ(displayed(t.make<fresh_vars_expr>(x, t.use(x), -1)), "(fresh-vars (x::int) x)");
    expr* context[] = {p, t.mk_true()};
    EXPECT_EQ(displayed(t.make<local_context_expr>(i, context, 2U, -1)), "(local-ctx i p true)");
    let_decl* a = t.let_variable("a", nullptr, i);
    let_decl* b = t.let_variable("b", t.real_type(), t.use(a));
    EXPECT_EQ(displayed(t.let({a, b}, t.use(b))), "(let ((a i) (b::real a)) b)");
    EXPECT_EQ(displayed(t.let({}, i)), "(let () i)");
}

TEST_F(pp_term, updates_and_literals) {
    expr* pair = t.tuple({i, p});
    EXPECT_EQ(displayed(pair), "(mk-tuple i p)");
    EXPECT_EQ(displayed(t.select(i, 3U)), "(select i 3)");
    EXPECT_EQ(displayed(t.select(i, "a")), "(select i a)");
    EXPECT_EQ(displayed(t.record({{"b", i}, {"a", p}})), "(mk-record a::p b::i)");
    EXPECT_EQ(displayed(t.update(i, {p, i}, p)), "(update i (p i) p)");
    EXPECT_EQ(displayed(t.update(i, 2, p)), "(update i 2 p)");
    EXPECT_EQ(displayed(t.update(i, "a", p)), "(update i a p)");
}

TEST_F(pp_term, types) {
    EXPECT_EQ(displayed(t.bool_type()), "bool");
    EXPECT_EQ(displayed(t.number_type()), "number");
    EXPECT_EQ(displayed(t.bv_type(32)), "(bitvector 32)");
    EXPECT_EQ(displayed(t.function_type({t.int_type(), t.bool_type()}, t.real_type())), "(-> int bool real)");
    var_decl* n = t.variable("n", t.nat_type());
    EXPECT_EQ(displayed(t.make<function_type>(n, t.subrange(t.num("0"), t.use(n)), -1)),
              "(-> n::nat (subrange 0 n))");
    EXPECT_EQ(displayed(t.tuple_type({t.int_type(), t.bool_type()})), "(tuple int bool)");
    EXPECT_EQ(displayed(t.record_type({{"b", t.int_type()}, {"a", t.bool_type()}})),
              "(record a::bool b::int)");
    var_decl* x = t.variable("x", t.int_type());
    EXPECT_EQ(displayed(t.make<subtype>(x, t.op("<", {t.num("0"), t.use(x)}), -1)),
              "(subtype (x::int) (< 0 x))");
    EXPECT_EQ(displayed(t.subrange(t.num("-1"), t.op("+", {i, i}))), "(subrange -1 (+ i i))");
}

TEST_F(pp_term, declarations) {
    EXPECT_EQ(displayed(static_cast<name_expr*>(i)->get_decl()), "(define i::int)");
    EXPECT_EQ(displayed(t.make<const_decl>(t.id("c"), t.int_type(), t.num("5"), -1)), "(define c::int 5)");
    EXPECT_EQ(displayed(t.declare_type("u")), "(define-type u)");
    EXPECT_EQ(displayed(t.declare_type("word", t.bv_type(8))), "(define-type word (bitvector 8))");
    t.declare_scalar("c", 3);
    EXPECT_EQ(displayed(m.find_type_decl(ustring("c"))), "(define-type c (scalar c0 c1 c2))");
    EXPECT_EQ(displayed(m.find_type_decl(ustring("int"))),
              "(define-type int (subtype (arg::number) (int_pred arg)))");
    EXPECT_EQ(displayed(t.id("name")), "name");
}

TEST_F(pp_term, a_datatype_shows_its_constructors_and_fields) {
    type_decl* d = t.make<type_decl>(t.id("list"), static_cast<type*>(nullptr), -1);
    type* list = t.keep(d->create_type_name(-1));
    auto recognizer = [&](char const* name) {
        return t.keep(recognizer_decl::create_recognizer_decl(t.id(name), list, -1));
    };
    auto accessor = [&](char const* name, type* range) {
        var_decl* arg = t.variable("arg", list);
        return t.make<accessor_decl>(t.id(name), t.make<function_type>(arg, range, -1), -1);
    };
    accessor_decl* accessors[] = {accessor("head", t.int_type()), accessor("tail", list)};
    constructor_decl* constructors[] = {
        t.make<constructor_decl>(t.id("nil"), list, recognizer("nil"), -1),
        t.make<constructor_decl>(t.id("cons"), accessors, 2U, list, recognizer("cons"), -1)};
    d->set_definition(t.keep(m.create_datatype(constructors, 2, -1)));
    m.add_global_type_decl(d);
    EXPECT_EQ(to_text(d), "(define-type list (datatype nil (cons head::int tail::list)))");
    EXPECT_EQ(displayed(t.op("head", {t.op("cons", {i, t.name("nil")})})), "(head (cons i nil))");
    EXPECT_EQ(displayed(t.op("cons?", {t.name("nil")})), "(cons? nil)");
}

TEST_F(pp_term, the_type_of_a_field_names_an_earlier_field_alone) {
    type_decl* d = t.make<type_decl>(t.id("box"), static_cast<type*>(nullptr), -1);
    type* box = t.keep(d->create_type_name(-1));
    var_decl* arg = t.variable("arg", box);
    accessor_decl* bound =
        t.make<accessor_decl>(t.id("bound"), t.make<function_type>(arg, t.nat_type(), -1), -1);
    expr* bound_of_arg = t.app(t.keep(bound->create_name_expr(-1)), {t.use(arg)});
    type* up_to_bound = t.subrange(t.num("0"), bound_of_arg);
    accessor_decl* value =
        t.make<accessor_decl>(t.id("value"), t.make<function_type>(arg, up_to_bound, -1), -1);
    accessor_decl* accessors[] = {bound, value};
    constructor_decl* constructors[] = {
        t.make<constructor_decl>(t.id("mk"), accessors, 2U, box,
                                 t.keep(recognizer_decl::create_recognizer_decl(t.id("mk"), box, -1)), -1)};
    d->set_definition(t.keep(m.create_datatype(constructors, 1, -1)));
    m.add_global_type_decl(d);
    EXPECT_EQ(to_text(d), "(define-type box (datatype (mk bound::nat value::(subrange 0 bound))))");
}

TEST_F(pp_term, wide_terms_break_and_indent_by_two) {
    expr* a = t.constant("a_name_of_thirty_characters_xx", t.bool_type());
    expr* conjunction = t.op("and", {a, a, a});
    EXPECT_EQ(displayed(conjunction),
              "(and\n  a_name_of_thirty_characters_xx\n  a_name_of_thirty_characters_xx\n"
              "  a_name_of_thirty_characters_xx)");
    EXPECT_EQ(
        displayed(t.op("or", {t.op("not", {p}), conjunction})),
        "(or\n  (not p)\n  (and\n    a_name_of_thirty_characters_xx\n    a_name_of_thirty_characters_xx\n"
        "    a_name_of_thirty_characters_xx))");
    var_decl* x = t.variable("x", t.int_type());
    EXPECT_EQ(
        displayed(t.forall({x}, conjunction)),
        "(forall (x::int)\n  (and\n    a_name_of_thirty_characters_xx\n    a_name_of_thirty_characters_xx\n"
        "    a_name_of_thirty_characters_xx))");
    EXPECT_EQ(to_text(conjunction), "(and a_name_of_thirty_characters_xx a_name_of_thirty_characters_xx "
                                    "a_name_of_thirty_characters_xx)");
}

TEST_F(pp_term, sharing) {
    expr* f = t.constant("f", t.function_type({t.int_type()}, t.int_type()));
    expr* fi = t.app(f, {i});
    EXPECT_EQ(as_dag(t.op("+", {fi, fi})), "(+ #1(f i) #1)");
    EXPECT_EQ(as_dag(t.op("+", {fi, fi}), true), "#1(f i)\n(+ #1 #1)");
    expr* sum = t.op("+", {fi, i});
    EXPECT_EQ(as_dag(t.op("<", {sum, t.op("*", {sum, fi})})), "(< #1(+ #2(f i) i) (* #1 #2))");
    EXPECT_EQ(as_dag(t.op("<", {sum, t.op("*", {sum, fi})}), true), "#2(f i)\n#1(+ #2 i)\n(< #1 (* #1 #2))");
    // Without sharing, as a tree.
    expr* plain = t.op("+", {t.app(f, {i}), t.app(f, {i})});
    EXPECT_EQ(as_dag(plain), "(+ (f i) (f i))");
    EXPECT_EQ(as_dag(plain, true), "(+ (f i) (f i))");
    // Names and constants are not worth a number.
    expr* five = t.num("5");
    EXPECT_EQ(as_dag(t.op("+", {five, five, i, i})), "(+ 5 5 i i)");
    EXPECT_EQ(as_dag(i), "i");
    // A node that others hold too occurs once.
    EXPECT_EQ(as_dag(fi), "(f i)");
}

TEST_F(pp_term, sharing_of_types) {
    type* pair = t.tuple_type({t.int_type(), t.int_type()});
    var_decl* x = t.variable("x", pair);
    var_decl* y = t.variable("y", pair);
    EXPECT_EQ(as_dag(t.forall({x, y}, p)), "(forall (x::#1(tuple int int) y::#1) p)");
    expr* bound = t.op("+", {i, i});
    EXPECT_EQ(as_dag(t.subrange(bound, t.num("1"))), "(subrange (+ i i) 1)");
    EXPECT_EQ(as_dag(t.subrange(bound, bound)), "(subrange #1(+ i i) #1)");
}

TEST_F(pp_term, sharing_of_many_paths) {
    shared_ptr<expr> e = i;
    for (int k = 0; k < 200; ++k) e = mk<application>(m.mk_name<add_decl>(), e, e, -1);
    std::string out = as_dag(e);
    EXPECT_EQ(std::count(out.begin(), out.end(), '+'), 200);
    out = as_dag(e, true);
    EXPECT_EQ(std::count(out.begin(), out.end(), '+'), 200);
    // The tree is as large as its number of paths, but its document is not.
    EXPECT_FALSE(pp_visitor()(e)->fits(1000000));
}

TEST_F(pp_term, the_whole_manager) {
    std::ostringstream out;
    m.display(out);
    EXPECT_NE(out.str().find("(define p::bool)"), std::string::npos);
    EXPECT_NE(out.str().find("(define-type nat (subtype (idx::int) (>= idx 0)))"), std::string::npos);
    EXPECT_LT(out.str().find("(define p::bool)"), out.str().find("(define i::int)"));
}

TEST_F(pp_term, the_layout_for_terms_limits_the_indentation) {
    shared_ptr<expr> e = p;
    for (int k = 0; k < 200; ++k) e = mk<application>(m.mk_name<not_decl>(), e, -1);
    std::string out = displayed(e);
    EXPECT_NE(out.find("\n" + std::string(60, ' ') + "(not"), std::string::npos);
    EXPECT_EQ(out.find(std::string(61, ' ')), std::string::npos);
}

// Everything that nests, 100,000 levels deep, on a small stack.
TEST_F(pp_term, deep_terms) {
    vexor_test::on_small_stack([this] {
        constexpr std::size_t depth = 100000;
        shared_ptr<expr> negation = p;
        shared_ptr<expr> sum = t.num("1");
        shared_ptr<expr> left_sum = t.num("1");
        shared_ptr<expr> nested_let = t.num("1");
        shared_ptr<expr> definitions = t.num("1");
        shared_ptr<type> nested_type = t.int_type();
        shared_ptr<type> left_type = t.int_type();
        shared_ptr<type> nested_tuple = t.int_type();
        auto let_of = [&](shared_ptr<expr> const& definition,
                          shared_ptr<expr> const& body) -> shared_ptr<expr> {
            let_decl* ds[] = {t.let_variable("x", nullptr, definition)};
            return mk<let_expr>(ds, 1U, body, -1).get();
        };
        for (std::size_t k = 0; k < depth; ++k) {
            negation = mk<application>(m.mk_name<not_decl>(), negation, -1);
            sum = mk<application>(m.mk_name<add_decl>(), t.num("1"), sum, -1);
            left_sum = mk<application>(m.mk_name<add_decl>(), left_sum, t.num("1"), -1);
            nested_let = let_of(i, nested_let);
            definitions = let_of(definitions, i);
            nested_type = function_type::construct_unary(t.int_type(), nested_type, -1);
            left_type = function_type::construct_unary(left_type, t.int_type(), -1);
            var_decl* vs[] = {t.make<var_decl>(static_cast<identifier*>(nullptr), nested_tuple, -1)};
            nested_tuple = mk<tuple_type>(&m, vs, 1U, -1);
        }
        auto parens = [](std::string const& s) {
            EXPECT_EQ(std::count(s.begin(), s.end(), '('), std::count(s.begin(), s.end(), ')'));
            return static_cast<std::size_t>(std::count(s.begin(), s.end(), '('));
        };
        for (ast* n : std::initializer_list<ast*>{negation.get(), nested_type.get(), nested_tuple.get()})
            EXPECT_EQ(parens(to_text(n)), depth);
        EXPECT_EQ(parens(displayed(sum)), depth);
        EXPECT_EQ(parens(as_dag(left_sum, true)), depth);
        EXPECT_EQ(parens(as_dag(left_type)), depth);
        EXPECT_EQ(parens(to_text(nested_let)), 3 * depth);
        EXPECT_EQ(parens(displayed(definitions)), 3 * depth);
    });
}

TEST_F(pp_term, wide_terms) {
    std::vector<expr*> args(200000, i);
    shared_ptr<expr> sum =
        mk<application>(m.mk_name<add_decl>(), args.data(), static_cast<unsigned>(args.size()), -1);
    std::string out = displayed(sum);
    EXPECT_EQ(std::count(out.begin(), out.end(), '\n'), 200000);
    EXPECT_EQ(as_dag(sum).size(), out.size());
}

} // namespace
} // namespace vexor
