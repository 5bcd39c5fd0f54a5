#include <gtest/gtest.h>

#include "ast/node/settings.h"
#include "native_text.h"

using namespace vexor;
using namespace vexor_test;

namespace {

class parse_definition_test : public testing::Test, public native_text {
protected:
    const_decl* constant(char const* name) { return m_manager.find_const_decl(name); }
};

TEST_F(parse_definition_test, constants) {
    EXPECT_EQ(read("(define x::int)"), "");
    EXPECT_EQ(last(), "(define x::int)");
    EXPECT_EQ(read("(define y::int (+ x 1))"), "");
    EXPECT_EQ(last(), "(define y::int (+ x 1))");
    EXPECT_EQ(read("(define (f a::int b::bool)::real (if b a 0))"), "");
    EXPECT_EQ(last(), "(define f::(-> a::int b::bool real) (lambda (a::int b::bool) (ite b a 0)))");
    EXPECT_EQ(read("(define (g a::int)::bool)"), "");
    EXPECT_EQ(last(), "(define g::(-> a::int bool))");
    EXPECT_EQ(constant("x")->get_position().m_pos, 0);
    EXPECT_FALSE(constant("g")->has_definition());
}

// Type and definition bind different variables, also where the type depends on a parameter.
TEST_F(parse_definition_test, parameters_have_one_binder) {
    EXPECT_EQ(read("(define (f a::int)::int a) (define (g n::int k::(subrange 0 n))::(subrange 0 k) k)"), "");
    EXPECT_EQ(last(), "(define g::(-> n::int k::(subrange 0 n) (subrange 0 k)) "
                      "(lambda (n::int k::(subrange 0 n)) k))");
    for (char const* name : {"f", "g"}) {
        const_decl* d = constant(name);
        auto* t = static_cast<function_type*>(d->get_type());
        auto* lambda = static_cast<lambda_expr*>(d->get_raw_definition());
        auto* body = static_cast<name_expr*>(lambda->get_expr());
        unsigned last = lambda->num_bindings() - 1;
        EXPECT_EQ(body->get_decl(), lambda->get_binding(last)) << name;
        for (unsigned i = 0; i <= last; i++) EXPECT_NE(t->get_param(i), lambda->get_binding(i)) << name;
        EXPECT_FALSE(d->get_type()->has_free_vars()) << name;
        EXPECT_FALSE(lambda->has_free_vars()) << name;
    }
}

TEST_F(parse_definition_test, types) {
    struct {
        char const* text;
        char const* printed;
    } const forms[] = {
        {"(define-type t1)", "(define-type t1)"},
        {"(define-type t2 int)", "(define-type t2 int)"},
        {"(define-type t3 (-> t1 t2))", "(define-type t3 (-> t1 t2))"},
        {"(define-type t4 (scalar a b c))", "(define-type t4 (scalar a b c))"},
        {"(define-type t5 (datatype nil (cons head::int tail::t5)))",
         "(define-type t5 (datatype nil (cons head::int tail::t5)))"},
        {"(define-type t6 (datatype (one)))", "(define-type t6 (datatype one))"},
        {"(define-type t7 (datatype (pair n::int k::(subrange 0 n))))",
         "(define-type t7 (datatype (pair n::int k::(subrange 0 n))))"},
        {"(define-type t8 (subrange 0 9))", "(define-type t8 (subrange 0 9))"},
    };
    for (auto const& each : forms) {
        EXPECT_EQ(read(each.text), "");
        EXPECT_EQ(last(), each.printed);
    }
    EXPECT_TRUE(is_a<scalar_element_decl>(constant("b")));
    EXPECT_EQ(text_of(constant("b")->get_type()), "t4");
    EXPECT_TRUE(is_a<constructor_decl>(constant("nil")));
    EXPECT_TRUE(is_a<constructor_decl>(constant("cons")));
    EXPECT_TRUE(is_a<recognizer_decl>(constant("nil?")));
    EXPECT_TRUE(is_a<recognizer_decl>(constant("cons?")));
    EXPECT_TRUE(is_a<accessor_decl>(constant("head")));
    EXPECT_TRUE(is_a<accessor_decl>(constant("tail")));
    EXPECT_EQ(text_of(constant("cons")->get_type()), "(-> int t5 t5)");
    EXPECT_EQ(text_of(constant("cons?")->get_type()), "(-> t5 bool)");
    EXPECT_EQ(expr("(head (cons 1 nil))"), "(head (cons 1 nil))");
}

// An accessor applies to the values of its own constructor alone.
TEST_F(parse_definition_test, domains_of_accessors) {
    ASSERT_EQ(read("(define-type t (datatype a (b v::int w::(subrange 0 v))))"), "");
    auto domain = [&](char const* name) {
        return static_cast<function_type*>(constant(name)->get_type())->get_param(0);
    };
    EXPECT_TRUE(domain("v")->is_anonymous());
    EXPECT_EQ(text_of(domain("v")->get_type()), "(subtype (arg::t) (b? arg))");
    EXPECT_EQ(domain("w")->get_name(), ustring("arg"));
    EXPECT_EQ(text_of(domain("w")->get_type()), "(subtype (arg::t) (b? arg))");
    auto* range = static_cast<subrange*>(static_cast<function_type*>(constant("w")->get_type())->get_range());
    auto* upper = to_app(range->get_upper());
    EXPECT_TRUE(is_a<accessor_name_expr>(upper->get_fun()));
    EXPECT_EQ(static_cast<name_expr*>(upper->get_arg(0))->get_decl(), domain("w"));
}

TEST_F(parse_definition_test, messages) {
    ASSERT_EQ(read("(define-type u) (define x::int)"), "");
    std::string const founded =
        "Invalid datatype. The datatype must contain at least one non-recursive constructor.";
    auto occurrence = [](std::string const& name) {
        return "Invalid occurrence of \"" + name + "\" in datatype definition.";
    };
    auto constant_defined = [](std::string const& name) {
        return "Constant \"" + name + "\" was already defined.";
    };
    struct {
        char const* text;
        int pos;
        std::string message;
    } const faults[] = {
        {"x", 0, unexpected("identifier", "(")},
        {"(x)", 1, "Invalid top level command."},
        {"()", 1, "Invalid top level command."},
        {"(", 1, "Invalid top level command."},
        {"(include \"a\")", 1, "Invalid top level command."},
        {"(define)", 7, unexpected(")", "identifier")},
        {"(define 1)", 8, unexpected("numeral", "identifier")},
        {"(define y)", 9, unexpected(")", "::")},
        {"(define y::)", 11, "Type expected."},
        {"(define y::int 1 2)", 17, unexpected("numeral", ")")},
        {"(define y::int", 14, "Expression expected."},
        {"(define and::int)", 8, unexpected("and", "identifier")},
        {"(define implies::int)", 0, constant_defined("implies")},
        {"(define bv-shl::int)", 0, constant_defined("bv-shl")},
        {"(define x::bool)", 0, constant_defined("x")},
        {"(define y::int y)", 15, "Undefined name \"y\"."},
        {"(define y::int (y))", 16, "Undefined name \"y\"."},
        {"(define (y a::int)::int (y a))", 25, "Undefined name \"y\"."},
        {"(define (y)::int 1)", 0, "Invalid function type. The function domain must be specified."},
        {"(define (y 1)::int 1)", 11, unexpected("numeral", "identifier")},
        {"(define (1 a::int)::int 1)", 9, unexpected("numeral", "identifier")},
        {"(define (y a::int) 1)", 19, unexpected("numeral", "::")},
        {"(define (y a::int)::int 1 2)", 26, unexpected("numeral", ")")},
        {"(define (y a::int)::int a) (assert a)", 35, "Undefined name \"a\"."},
        {"(define-type)", 12, unexpected(")", "identifier")},
        {"(define-type u)", 13, "Type \"u\" was already defined."},
        {"(define-type int)", 13, unexpected("int", "identifier")},
        {"(define-type any)", 13, "Type \"any\" was already defined."},
        {"(define-type t int int)", 19, unexpected("int", ")")},
        {"(define-type t 1)", 15, "Type definition expected."},
        {"(define-type t ())", 16, "Type definition expected."},
        {"(define-type t", 14, "Type definition expected."},
        {"(define-type t (scalar))", 15, "Invalid empty scalar type."},
        {"(define-type t (scalar a 1))", 25, unexpected("numeral", ")")},
        {"(define-type t (scalar a a))", 25, constant_defined("a")},
        {"(define-type t (scalar a x b))", 25, constant_defined("x")},
        {"(define-type t (scalar a b)", 27, unexpected("(end-of-stream)", ")")},
        {"(define-type t (scalar a b) 1)", 28, unexpected("numeral", ")")},
        {"(define-type u (scalar a b))", 13, "Type \"u\" was already defined."},
        {"(define-type t (tuple (scalar a b) int))", 23, "Type expected."},
        {"(define y::(scalar a b))", 12, "Type expected."},
        {"(define y::(datatype a b))", 12, "Type expected."},
        {"(define-type t (datatype))", 15,
         "Invalid empty datatype. The datatype must contain at least one constructor."},
        {"(define-type t (datatype 1))", 25, "Constructor expected."},
        {"(define-type t (datatype a", 26, "Constructor expected."},
        {"(define-type t (datatype ()))", 26, unexpected(")", "identifier")},
        {"(define-type t (datatype (a 1)))", 28, unexpected("numeral", "identifier")},
        {"(define-type t (datatype (a b)))", 29, unexpected(")", "::")},
        {"(define-type t (datatype a) 1)", 28, unexpected("numeral", ")")},
        {"(define-type t (datatype a a))", 27, constant_defined("a")},
        {"(define-type t (datatype a a?))", 27, constant_defined("a?")},
        {"(define-type t (datatype x))", 25, constant_defined("x")},
        {"(define-type t (datatype (a f::int) (b f::int)))", 39, constant_defined("f")},
        {"(define-type t (datatype (a f::int f::int)))", 35, constant_defined("f")},
        {"(define-type t (datatype (a f::t)))", 15, founded},
        {"(define-type t (datatype (a f::t) (b g::t)))", 15, founded},
        // The type itself anywhere but as the type of a field.
        {"(define-type t (datatype (b x::(tuple t int))))", 38, occurrence("t")},
        {"(define-type t (datatype a (b x::(tuple y::t int))))", 43, occurrence("t")},
        {"(define-type t (datatype a (b x::(-> t int))))", 37, occurrence("t")},
        {"(define-type t (datatype a (b x::(-> int t))))", 41, occurrence("t")},
        {"(define-type t (datatype a (b x::(record f::t))))", 44, occurrence("t")},
        {"(define-type t (datatype a (b x::(subtype (y::t) true))))", 46, occurrence("t")},
        {"(define-type t t)", 15, occurrence("t")},
        {"(define-type t (tuple t))", 22, occurrence("t")},
        {"(define-type t (record f::t))", 26, occurrence("t")},
        {"(define-type t (subtype (x::t) true))", 28, occurrence("t")},
        {"(define-type t (-> t t))", 19, occurrence("t")},
    };
    unsigned constants = m_manager.num_const_names();
    unsigned types = m_manager.num_type_names();
    for (auto const& each : faults) {
        unsigned before = m_contents.size();
        EXPECT_EQ(read(each.text), at(each.pos, each.message)) << each.text;
        // What was defined before the fault stays, nothing of the faulty command does.
        bool has_definition_before = m_contents.size() > before;
        EXPECT_EQ(m_manager.num_const_names(), constants + (has_definition_before ? 1 : 0)) << each.text;
        EXPECT_EQ(m_manager.num_type_names(), types) << each.text;
        constants = m_manager.num_const_names();
        m_manager.check_invariant();
    }
}

// A type that is not well-typed leaves no names of its own behind.
TEST_F(parse_definition_test, faulty_types_leave_no_names) {
    switched_on type_check(g_type_check);
    unsigned constants = m_manager.num_const_names();
    EXPECT_EQ(read("(define-type t (datatype a (b f::(subrange true 1))))"), at(33, "invalid subrange."));
    EXPECT_EQ(read("(define x::int true)"), at(0, "invalid constant declaration, incompatible types."));
    EXPECT_EQ(m_manager.num_const_names(), constants);
    EXPECT_FALSE(m_manager.is_type_name("t"));
    EXPECT_EQ(read("(define-type t (datatype a (b f::(subrange 0 1)))) (define x::int 1)"), "");
}

// Nodes of a parse that fails go with the parser.
TEST_F(parse_definition_test, faults_leave_no_nodes) {
    // The first subrange makes the manager's shared names of what its predicate is built from.
    ASSERT_EQ(read("(define x::(subrange 0 1))"), "");
    std::size_t nodes = m_manager.num_live_nodes();
    for (char const* text :
         {"(define y::(tuple int bool) (mk-tuple x (and (f",
          "(define-type t (datatype a (b f::int g::t) (c h::(-> t int))))",
          "(define (y a::int)::int (let ((b a) (c b)) (select (mk-record d::c) ",
          "(define-type t (scalar a b c)",
          "(define-type t (datatype a (b f::int g::(subrange 0 f)) (c h::(subtype (k::int) (< k",
          "(assert (forall (y::int)"}) {
        EXPECT_NE(read(text), "") << text;
        EXPECT_EQ(m_manager.num_live_nodes(), nodes) << text;
    }
}

TEST_F(parse_definition_test, generated_names_stay_after_pop) {
    ASSERT_EQ(read("(push) (define-type t (datatype a (b f::int))) (define-type s (scalar p q)) (define "
                   "x::t) (pop)"),
              "");
    m_contents.reset();
    for (char const* name : {"a", "b", "a?", "b?", "f", "p", "q"})
        EXPECT_TRUE(m_manager.is_global_name_expr(name)) << name;
    EXPECT_FALSE(m_manager.is_global_name_expr("x"));
    EXPECT_FALSE(m_manager.is_type_name("t"));
    EXPECT_EQ(expr("(f (b 1))"), "(f (b 1))");
    EXPECT_EQ(read("(define a::int)"), at(0, "Constant \"a\" was already defined."));
    EXPECT_EQ(read("(define x::int) (define-type t)"), "");
}

// A definition with a binder is copied at each use: the two uses of A below must not bind the same variable.
TEST_F(parse_definition_test, definitions_with_binders_are_copied) {
    ASSERT_EQ(read("(define-type U) (define A::(-> (-> U bool) bool) (lambda (f::(-> U bool)) (forall (y::U) "
                   "(f y))))"
                   "(define B::bool (A (lambda (z::U) (A (lambda (w::U) (= z w))))))"),
              "");
    shared_ptr<vexor::expr> first = constant("A")->get_definition();
    shared_ptr<vexor::expr> second = constant("A")->get_definition();
    auto bound = [](vexor::expr* e) {
        return static_cast<binding_expr*>(static_cast<binding_expr*>(e)->get_expr())->get_binding(0);
    };
    EXPECT_NE(bound(first), bound(second));
    EXPECT_NE(bound(first), bound(constant("A")->get_raw_definition()));
    EXPECT_TRUE(first->equals(second));
    EXPECT_TRUE(first->equals(constant("A")->get_raw_definition()));
    EXPECT_EQ(text_of(first), "(lambda (f::(-> U bool)) (forall (y::U) (f y)))");
}

} // namespace
