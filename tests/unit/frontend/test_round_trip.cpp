// Random texts are read, printed and read again.
#include <gtest/gtest.h>

#include "ast/node/settings.h"
#include "ast/types/type_checker.h"
#include "native_text.h"
#include "random_text.h"

using namespace vexor;
using namespace vexor_test;

namespace {

std::string type_error_of(vexor::ast* node) {
    try {
        type_check(node);
    } catch (type_checker_exception const& e) {
        return e.what_core();
    }
    return "";
}

std::string dag_text_of(vexor::ast* node) {
    std::ostringstream out;
    node->display_as_dag(out, false);
    return out.str();
}

// Returns whether the term is well-typed.
bool check_round_trip(native_text& native, random_text::term const& term) {
    std::string fault = native.read("(assert " + term.source + ")");
    EXPECT_EQ(fault, "") << term.source;
    if (!fault.empty()) return false;
    shared_ptr<vexor::ast> first = native.m_contents[native.m_contents.size() - 1];
    EXPECT_EQ(text_of(first), term.printed) << term.source;
    EXPECT_FALSE(first->has_free_vars()) << term.source;
    shared_ptr<vexor::expr> again = read_expr_from_string(&native.m_manager, text_of(first).c_str());
    EXPECT_TRUE(again->equals(first)) << term.source;
    EXPECT_EQ(again->hash(), first->hash()) << term.source;
    EXPECT_EQ(text_of(again), term.printed);
    std::string dag = dag_text_of(first);
    EXPECT_EQ(native.read("(assert " + dag + ")"), "") << dag;
    vexor::ast* from_dag = native.m_contents[native.m_contents.size() - 1];
    EXPECT_TRUE(from_dag->equals(first)) << dag;
    EXPECT_EQ(dag_text_of(from_dag), dag);
    // The checker gives variables of let the types of their definitions, so it comes last.
    std::string type_error = type_error_of(first);
    EXPECT_EQ(type_error_of(again), type_error) << term.source;
    native.m_contents.reset();
    return type_error.empty();
}

void round_trips(unsigned rounds, unsigned ill_typed, std::uint64_t seed, unsigned& num_well_typed) {
    native_text native;
    ASSERT_EQ(native.read(random_text::world), "");
    native.m_contents.reset();
    std::size_t nodes = 0;
    for (unsigned round = 0; round < rounds && !testing::Test::HasFailure(); round++, seed++) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        random_stream random(seed);
        random_text text(random, ill_typed);
        random_text::term term = text.make(text.random_sort(), 2 + random.below(4));
        if (check_round_trip(native, term)) num_well_typed++;
        // After some rounds the manager has all shared nodes that it makes on first need.
        if (nodes == 0 || round < rounds / 2) nodes = native.m_manager.num_live_nodes();
    }
    if (!parser::m_sharing) {
        EXPECT_EQ(native.m_manager.num_live_nodes(), nodes);
    }
}

TEST(round_trip, well_typed_terms) {
    unsigned num_well_typed = 0;
    unsigned rounds = vexor_test::rounds(5000);
    round_trips(rounds, 0, first_seed(3000000), num_well_typed);
    EXPECT_EQ(num_well_typed, rounds);
}

TEST(round_trip, ill_typed_terms) {
    unsigned num_well_typed = 0;
    unsigned rounds = vexor_test::rounds(4000);
    round_trips(rounds, 8, first_seed(4000000), num_well_typed);
    EXPECT_GT(num_well_typed, rounds / 20); // there are both kinds
    EXPECT_LT(num_well_typed, rounds * 19 / 20);
}

TEST(round_trip, shared_nodes) {
    switched_on sharing(parser::m_sharing);
    unsigned num_well_typed = 0;
    unsigned rounds = vexor_test::rounds(2000);
    round_trips(rounds, 0, first_seed(5000000), num_well_typed);
    EXPECT_EQ(num_well_typed, rounds);
}

} // namespace
