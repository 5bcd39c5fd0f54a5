// Every message of the type checker as a user meets it: for a text, with the position of the fault.
#include <gtest/gtest.h>

#include "ast/node/settings.h"
#include "ast/types/type_checker.h"
#include "native_text.h"

namespace vexor {
namespace {

using vexor_test::at;

class type_messages : public testing::Test {
protected:
    type_messages() {
        EXPECT_EQ(m_text.read("(define p::bool) (define i::int) (define r::real) (define v::(bitvector 8))"
                              "(define-type color (scalar red green)) (define s::color)"
                              "(define f::(-> int bool real)) (define t::(tuple int bool))"
                              "(define rec::(record a::int b::bool))"),
                  "");
    }

    // What the check of an expression says; "ok" for nothing.
    std::string check(std::string const& text) {
        std::istringstream stream(text);
        try {
            shared_ptr<expr> e = read_expr(&m_text.m_manager, stream, "f");
            type_check(e);
        } catch (vexor_exception const& e) {
            return e.what();
        }
        return "ok";
    }
    // What reading commands says with the type check on.
    std::string read(std::string const& text) {
        vexor_test::switched_on on(g_type_check);
        std::string message = m_text.read(text);
        return message.empty() ? "ok" : message;
    }

    vexor_test::switched_on m_on{g_type_check};
    vexor_test::native_text m_text;
};

TEST_F(type_messages, well_typed) {
    EXPECT_EQ(check("(= r 1)"), "ok");
    EXPECT_EQ(check("(and p (=> p (< i r)))"), "ok");
    EXPECT_EQ(check("(bv-extract 0 7 v)"), "ok");
    EXPECT_EQ(check("(bv-extract 7 0 v)"), "ok");
    EXPECT_EQ(check("(let ((x 1) (y::real x)) (+ x y))"), "ok");
}

TEST_F(type_messages, operators) {
    EXPECT_EQ(check("(not i)"), at(0, "argument is not boolean."));
    EXPECT_EQ(check("(or p (not i))"), at(6, "argument is not boolean."));
    EXPECT_EQ(check("(not (+ 1 p))"), at(5, "argument is not a numeral."));
    EXPECT_EQ(check("(= s i)"), at(0, "incompatible types in equality."));
    EXPECT_EQ(check("(= s)"), at(0, "wrong number of arguments"));
    EXPECT_EQ(check("(ite i 1 2)"), at(0, "condition of if-then-else expression is not a boolean."));
    EXPECT_EQ(check("(if p 1 p)"), at(0, "incompatible types in then/else braches of if-then-else."));
    EXPECT_EQ(check("(bv-add v 0b0011001100110011)"), at(0, "bitvectors have different sizes."));
    EXPECT_EQ(check("(bv-slt v i)"), at(0, "argument is not a bitvector."));
    EXPECT_EQ(check("(bv-concat v i)"), at(0, "argument is not a bitvector."));
    EXPECT_EQ(check("(bv-extract i 0 v)"), at(0, "argument must be a number."));
    EXPECT_EQ(check("(bv-extract 8 0 v)"), at(0, "invalid bitvector extract."));
    EXPECT_EQ(check("(bv-extract 0 8 v)"), at(0, "invalid bitvector extract."));
    EXPECT_EQ(check("(bv-shift-left0 v 9)"), at(0, "invalid shift operation."));
    EXPECT_EQ(check("(bv-rotate_left v 1/2)"), at(0, "invalid shift operation."));
    EXPECT_EQ(check("(bv-repeat v 0)"), at(0, "invalid repeat operation."));
    EXPECT_EQ(check("(bv-repeat v 536870913)"), at(0, "invalid repeat operation."));
    EXPECT_EQ(check("(bv-sign-extend v 4294967295)"), at(0, "invalid extend operation."));
}

TEST_F(type_messages, functions_and_binders) {
    EXPECT_EQ(check("(i 1)"), at(0, "function expected."));
    EXPECT_EQ(check("(f 1)"), at(0, "wrong number of arguments"));
    EXPECT_EQ(check("(f p 1)"), at(0, "invalid function argument, type mismatch."));
    EXPECT_EQ(check("(forall (x::int) x)"), at(0, "body of quandified expression is not boolean."));
    EXPECT_EQ(check("(let ((x::bool 1)) x)"), at(7, "invalid let declaration, incompatible types."));
    EXPECT_EQ(check("(update f (1) r)"), at(0, "invalid function update, wrong number of arguments."));
    EXPECT_EQ(check("(update f (p p) r)"), at(0, "invalid function update index, type mismatch."));
    EXPECT_EQ(check("(update f (1 p) p)"), at(0, "invalid function update new value, type mismatch."));
}

TEST_F(type_messages, tuples_and_records) {
    EXPECT_EQ(check("(select t 2)"), at(0, "invalid tuple selection."));
    EXPECT_EQ(check("(select i 0)"), at(0, "tuple expression expected."));
    EXPECT_EQ(check("(select rec c)"), at(0, "invalid record selection, unknown field."));
    EXPECT_EQ(check("(select t a)"), at(0, "record expression expected."));
    EXPECT_EQ(check("(update t 1 1)"),
              at(0, "invalid tuple update, the new value type is incompatible with the "
                    "specified tuple position type."));
    EXPECT_EQ(check("(update rec c p)"), at(0, "invalid record update, unknown field."));
    EXPECT_EQ(check("(update rec a p)"),
              at(0, "invalid record update, the new value type is incompatible with field type."));
}

TEST_F(type_messages, definitions) {
    EXPECT_EQ(read("(define c::bool 1)"), at(0, "invalid constant declaration, incompatible types."));
    EXPECT_EQ(read("(define-type q (subrange p 5))"), at(15, "invalid subrange."));
    EXPECT_EQ(read("(define-type w (bitvector 0))"), at(26, "invalid bitvector size."));
    EXPECT_EQ(read("(define w::(bitvector 16777217))"), at(22, "invalid bitvector size."));
    EXPECT_EQ(read("(define w::(bitvector 4294967297))"), at(22, "invalid bitvector size."));
    EXPECT_EQ(read("(define-type z (subtype (x::int) x))"),
              at(15, "invalid subtype, the predicate is not boolean."));
    // What failed was not declared.
    EXPECT_EQ(read("(define c::bool true)"), "ok");
    EXPECT_EQ(read("(define-type w (bitvector 8))"), "ok");
}

// A type must not be its own definition: every walk through names would run in circles.
TEST_F(type_messages, types_that_are_themselves) {
    for (char const* text :
         {"(define-type z z)", "(define-type z (subtype (x::z) true))", "(define-type z (record a::z))",
          "(define-type z (record a::(tuple int z)))", "(define-type z (-> int z))",
          "(define-type z (tuple z int))", "(define-type z (subrange 0 (let ((x::z 1)) x)))",
          "(define-type z (datatype a (b x::(record f::z))))"}) {
        SCOPED_TRACE(text);
        std::string message = read(text);
        EXPECT_NE(message.find("Invalid occurrence of \"z\" in datatype definition."), std::string::npos)
            << message;
    }
    EXPECT_EQ(read("(define-type l (datatype n (c hd::int tl::l)))"), "ok");
}

} // namespace
} // namespace vexor
