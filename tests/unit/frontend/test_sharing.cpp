// Shared nodes for text that a machine wrote.
#include <gtest/gtest.h>

#include "native_text.h"

using namespace vexor;
using namespace vexor_test;

namespace {

class sharing_test : public testing::Test, public native_text {
protected:
    switched_on m_switch{parser::m_sharing};

    application* assertion(unsigned i) { return to_app(static_cast<vexor::expr*>(m_contents[i])); }
};

TEST_F(sharing_test, one_node_for_a_name) {
    ASSERT_EQ(read("(define x::bool)(define y::bool)(assert (and x (not y)))(assert (and (not y) true))"),
              "");
    EXPECT_EQ(assertion(2)->get_fun(), m_manager.mk_name<and_decl>());
    EXPECT_EQ(assertion(2)->get_fun(), assertion(3)->get_fun());
    EXPECT_EQ(assertion(2)->get_arg(1), assertion(3)->get_arg(0));
    EXPECT_EQ(assertion(3)->get_arg(1), m_manager.mk_true());
    EXPECT_EQ(assertion(2)->get_pos(), -1);
    EXPECT_EQ(static_cast<const_decl*>(m_contents[0])->get_type(), m_manager.create_bool_type());
}

TEST_F(sharing_test, one_node_for_the_name_of_a_type) {
    ASSERT_EQ(read("(define-type t)(define x::t)(define y::t)"), "");
    EXPECT_EQ(static_cast<const_decl*>(m_contents[1])->get_type(),
              static_cast<const_decl*>(m_contents[2])->get_type());
}

TEST_F(sharing_test, only_global_names_are_shared) {
    ASSERT_EQ(read("(define x::bool)(assert (and (not x) (forall (x::bool) (not x)) (let ((x false)) (not "
                   "x)) (not x)))"),
              "");
    application* conjunction = assertion(1);
    auto decl_below_not = [](vexor::expr* e) {
        return static_cast<name_expr*>(to_app(e)->get_arg(0))->get_decl();
    };
    EXPECT_EQ(conjunction->get_arg(0), conjunction->get_arg(3));
    auto* quantified = static_cast<forall_expr*>(conjunction->get_arg(1));
    EXPECT_EQ(decl_below_not(quantified->get_expr()), quantified->get_binding(0));
    auto* let = static_cast<let_expr*>(conjunction->get_arg(2));
    EXPECT_EQ(decl_below_not(let->get_expr()), let->get_binding(0));
}

// A name that means something else since a pop is another node.
TEST_F(sharing_test, names_that_change) {
    ASSERT_EQ(read("(push)(define x::bool)(define-type t int)(define k::t)(assert (not x))(pop)"
                   "(define x::bool true)(define-type t bool)(define k::t)(assert (not x))"),
              "");
    application* before = assertion(3);
    application* after = assertion(7);
    EXPECT_NE(before, after);
    auto* x = static_cast<name_expr*>(after->get_arg(0));
    EXPECT_EQ(x->get_decl(), m_contents[4]);
    EXPECT_EQ(static_cast<name_expr*>(before->get_arg(0))->get_decl(), m_contents[0]);
    auto type_of = [&](unsigned i) {
        return static_cast<type_name*>(static_cast<const_decl*>(m_contents[i])->get_type())->get_decl();
    };
    EXPECT_EQ(type_of(2), m_contents[1]);
    EXPECT_EQ(type_of(6), m_contents[5]);
}

// Nodes have no positions, messages have.
TEST_F(sharing_test, messages_have_positions) {
    struct {
        char const* text;
        int pos;
        char const* message;
    } const faults[] = {
        {"(assert z)", 8, "Undefined name \"z\"."},
        {"(define x::z)", 11, "Undefined name \"z\"."},
        {"(define and?::int)(define and?::int)", 18, "Constant \"and?\" was already defined."},
        {"(define-type any)", 13, "Type \"any\" was already defined."},
        {"(assert (not))", 8, "Invalid application, there are no arguments."},
        {"(assert (forall () true))", 8, "Invalid binding expression, there are no declarations."},
        {"(assert (mk-tuple))", 8,
         "Invalid empty tuple literal. A tuple literal must contain at least one component."},
        {"(define x::(record a::int a::int))", 26,
         "Invalid record type, the field \"a\" was already defined."},
        {"(define-type t (scalar a a))", 25, "Constant \"a\" was already defined."},
        {"(define-type t (datatype (a b::t)))", 15,
         "Invalid datatype. The datatype must contain at least one non-recursive constructor."},
    };
    for (auto const& each : faults) EXPECT_EQ(read(each.text), at(each.pos, each.message)) << each.text;
}

TEST_F(sharing_test, labels_name_shared_nodes) {
    ASSERT_EQ(read("(define x::int)(define c::(-> #1(tuple int int) #1 bool))"
                   "(assert (or #1(< x 1) (and #1 #2(< #3(+ x 1) #3)) #2))"),
              "");
    application* disjunction = assertion(2);
    auto* conjunction = to_app(disjunction->get_arg(1));
    EXPECT_EQ(disjunction->get_arg(0), conjunction->get_arg(0));
    EXPECT_EQ(disjunction->get_arg(2), conjunction->get_arg(1));
    EXPECT_EQ(to_app(conjunction->get_arg(1))->get_arg(0), to_app(conjunction->get_arg(1))->get_arg(1));
    auto* t = static_cast<function_type*>(static_cast<const_decl*>(m_contents[1])->get_type());
    EXPECT_EQ(t->get_param_type(0), t->get_param_type(1));
    // Labels end with their command, and names that the text declares go before them.
    EXPECT_EQ(read("(assert #1)"), at(10, unexpected(")", "(")));
    EXPECT_EQ(read("(define #1::bool)(assert #1)"), "");
    EXPECT_EQ(last(), "#1");
    EXPECT_EQ(read("(assert (= #2(+ x 1) (lambda (y::#2) y)))"), at(33, "Type expected."));
    EXPECT_EQ(read("(assert (= (lambda (y::#2(-> int int)) y) #2))"), at(42, "Expression expected."));
    // Outside of files that a solver does not read, they are plain names.
    EXPECT_EQ(expr("(and #3(not true) #3)"), at(5, "Undefined name \"#3\"."));
}

} // namespace
