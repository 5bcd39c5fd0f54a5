// Texts that are cut off, damaged, huge or deep end in an exception of the library or in a correct result.
#include <gtest/gtest.h>

#include <fstream>
#include <functional>
#include <vector>

#include "base/deep_stack.h"
#include "native_text.h"
#include "random_text.h"
#include "support/small_stack.h"

using namespace vexor;
using namespace vexor_test;

namespace {

std::string const samples[] = {
    "(define x::int) (define (f a::int b::bool)::real (if b a 1/2)) ; comment\n(assert (= (f x true) -3))",
    "(define-type t (datatype nil (cons head::int tail::t rest::(subrange 0 head)))) (define l::t (cons 1 "
    "nil 0))",
    "(define-type s (scalar a b)) (define-type w (subtype (n::int) (> n 0))) (define r::(record m::w "
    "n::(tuple int s)))"
    "(assert (= (select (select r n) 1) a)) (assert (/= r (update (mk-record m::1 n::(mk-tuple 1 b)) m 2)))",
    "(define v::(bitvector 8)) (assert (bv-slt (bv-concat v 0b01) (mk-bv 10 5))) (echo \"a\\065\\\"b\")",
    "(define f::(-> x::int (subrange 0 x) bool)) (assert+ (forall (x::int) (exists (y::nat) (f x y))) 5) "
    "(check)"
    "(assert (let ((u 1) (v::int u)) ((update f (u v) true) 1 0))) (push) (pop) (set-verbosity! 0)"};

// The reading ends, and the manager is in order.
void read_anything(std::string const& text) {
    native_text native;
    unsigned constants = native.m_manager.num_const_names();
    std::string fault = native.read(text);
    native.m_manager.check_invariant();
    if (!fault.empty()) {
        EXPECT_EQ(fault.rfind("[f, line(", 0), 0u) << fault;
    }
    EXPECT_GE(native.m_manager.num_const_names(), constants);
}

TEST(bad_input, every_prefix) {
    for (std::string const& sample : samples) {
        native_text whole;
        ASSERT_EQ(whole.read(sample), "");
        for (std::size_t length = 0; length <= sample.size(); length++) {
            SCOPED_TRACE(sample.substr(0, length));
            read_anything(sample.substr(0, length));
        }
    }
}

TEST(bad_input, a_byte_changed) {
    std::uint64_t seed = first_seed(7000);
    for (unsigned round = 0; round < rounds(3000); round++, seed++) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        random_stream random(seed);
        std::string text = samples[random.below(std::size(samples))];
        for (unsigned i = 1 + random.below(3); i > 0; i--) {
            std::size_t where = random.below(static_cast<unsigned>(text.size()));
            static std::string const likely = "()\":;/-01bx \n";
            char c = random.chance(50) ? likely[random.below(static_cast<unsigned>(likely.size()))]
                                       : static_cast<char>(random.below(256));
            if (random.chance(50))
                text[where] = c;
            else if (random.chance(50))
                text.insert(where, 1, c);
            else
                text.erase(where, 1);
        }
        read_anything(text);
    }
}

TEST(bad_input, names_of_a_megabyte_and_odd_bytes) {
    std::string name(1 << 20, 'n');
    native_text native;
    EXPECT_EQ(native.read("(define " + name + "::int) (assert (= " + name + " 1))"), "");
    EXPECT_EQ(native.last(), "(= " + name + " 1)");
    EXPECT_EQ(native.expr(name + "n"), at(0, "Undefined name \"" + name + "n\"."));
    EXPECT_EQ(native.read("(define \xc3\xa9\xff::int) (assert (= \xc3\xa9\xff 1))"), "");
    EXPECT_EQ(native.last(), "(= \xc3\xa9\xff 1)");
    EXPECT_EQ(native.read(std::string("(define a\0b::int)", 17)), at(9, "Invalid token."));
    EXPECT_FALSE(native.m_manager.is_global_name_expr("a"));
}

TEST(bad_input, numerals_of_a_million_digits) {
    std::string digits(1000000, '7');
    native_text native;
    EXPECT_EQ(native.expr(digits), digits);
    EXPECT_EQ(native.expr("0b" + std::string(1000000, '1')), "0b" + std::string(1000000, '1'));
    EXPECT_EQ(native.expr("(mk-bv 8 " + digits + ")"),
              "0b01110001"); // 10^8 is a multiple of 256; 77777777 % 256 = 113
    EXPECT_EQ(native.expr("(mk-bv " + digits + " 1)"), at(7, "Invalid mk-bv."));
    EXPECT_EQ(native.type("(bitvector " + digits + ")"), at(11, "invalid bitvector size."));
}

std::string nested(unsigned depth, std::string const& open, std::string const& middle,
                   std::string const& close) {
    std::string result;
    for (unsigned i = 0; i < depth; i++) result += open;
    result += middle;
    for (unsigned i = 0; i < depth; i++) result += close;
    return result;
}

// What nests in the language, with room for a term or a type in the middle.
struct nesting {
    char const* before;
    char const* open;
    char const* middle;
    char const* close;
    char const* after;
};
nesting const nestings[] = {
    {"(assert ", "(not ", "true", ")", ")"},
    {"(assert (= 1 ", "(+ 1 ", "1", ")", "))"},
    {"(assert ", "(let ((x true)) ", "x", ")", ")"},
    {"(assert ", "(let ((x ", "true", ")) x)", ")"},
    {"(assert ", "(forall (x::int) ", "true", ")", ")"},
    {"(assert (= 1 ", "((lambda (x::int) ", "1", ") 1)", "))"},
    {"(assert (= 1 ", "(select (mk-tuple ", "1", ") 0)", "))"},
    {"(assert (= 1 ", "(select (mk-record a::", "1", ") a)", "))"},
    {"(define t::(tuple int))(assert (= t ", "(update ", "t", " 0 1)", "))"},
    {"(define g::(-> int int))(assert (= g ", "(update g (1) (", "g", " 1))", "))"},
    {"(define c::", "(-> int ", "int", ")", ")"},
    {"(define c::", "(-> ", "int", " int)", ")"},
    {"(define c::", "(tuple int ", "int", ")", ")"},
    {"(define c::", "(record a::", "int", ")", ")"},
    {"(define c::", "(subtype (x::", "int", ") true)", ")"},
    {"(define-type c ", "(-> int ", "int", ")", ")"},
};

TEST(bad_input, nested_100000_levels_deep_on_a_small_stack) {
    constexpr unsigned depth = 100000;
    for (nesting const& each : nestings) {
        std::string text = each.before + nested(depth, each.open, each.middle, each.close) + each.after;
        std::string fault = "not read";
        unsigned num_read = 0;
        on_small_stack([&] {
            native_text native;
            fault = native.read(text);
            num_read = native.m_contents.size();
        });
        EXPECT_EQ(fault, "") << each.open;
        EXPECT_GE(num_read, 1u) << each.open;
    }
}

// The sanitizer for addresses cleans up behind an exception only on stacks of up to 64 MB.
#if defined(__SANITIZE_ADDRESS__)
constexpr int depth_of_exceptions = 10000;
#else
constexpr int depth_of_exceptions = 100000;
#endif

TEST(bad_input, unbalanced_parentheses) {
    constexpr int depth = depth_of_exceptions;
    on_small_stack([&] {
        native_text native;
        EXPECT_EQ(native.expr(std::string(depth, '(')), at(depth, "Expression expected."));
        EXPECT_EQ(native.expr(std::string(depth, ')')), at(0, "Expression expected."));
        EXPECT_EQ(native.expr(nested(depth, "(not ", "true", "")), at(5 * depth + 4, "Expression expected."));
        EXPECT_EQ(native.expr("(not true))"), "(not true)");
        EXPECT_EQ(native.read("(assert true))"), at(13, unexpected(")", "(")));
    });
}

TEST(bad_input, deeper_than_the_deep_stack) {
    set_deep_stack_size(4 << 20);
    for (nesting const& each : nestings) {
        std::string text = each.before + nested(300000, each.open, each.middle, each.close) + each.after;
        native_text native;
        std::size_t nodes = 0;
        std::string fault;
        on_small_stack([&] { // a thread of its own has the new size
            fault = native.read(text);
            nodes = native.m_manager.num_live_nodes();
        });
        EXPECT_NE(fault.find(")]: Nesting is too deep."), std::string::npos)
            << each.open << fault.substr(0, 200);
        EXPECT_EQ(fault.rfind("[f, line(1), column(", 0), 0u) << fault.substr(0, 200);
        EXPECT_LT(nodes, 1000u) << each.open;
    }
    set_deep_stack_size(0);
}

} // namespace
