// The type checker, get_type and the printer on random terms, against a checker written from the rules.
#include "ast/print/pp_dag_visitor.h"
#include "ast/types/op_rules.h"
#include "ast/types/type_checker.h"
#include "support/naive_types.h"
#include "support/random_terms.h"

#include <gtest/gtest.h>
#include <map>
#include <set>
#include <sstream>

namespace vexor {
namespace {

using vexor_test::naive_check;
using vexor_test::naive_fault;
using vexor_test::naive_type;
using vexor_test::naive_type_from;
using vexor_test::random_terms;
using vexor_test::to_text;

TEST(type_random, well_typed_terms_pass) {
    for (unsigned seed = 0; seed < vexor_test::rounds(300); ++seed) {
        SCOPED_TRACE(seed);
        ast_manager m;
        random_terms random(m, seed);
        type* t = random.random_type(2);
        expr* e = random.random_term(t, 5);
        SCOPED_TRACE(to_text(e));
        naive_type expected;
        try {
            expected = naive_check(e);
        } catch (naive_fault const& f) {
            FAIL() << f.m_message << " at " << to_text(f.m_node);
        }
        ASSERT_NO_THROW(type_check(e));
        // To the point: integers are told from reals.
        ASSERT_TRUE(naive_type_from(e->get_type()) == expected) << to_text(e->get_type());
        ASSERT_TRUE(vexor_test::naive_equivalent(expected, naive_type_from(t)));
        ASSERT_EQ(e->is_int(), expected.m_kind == naive_type::integer);
        ASSERT_EQ(e->is_numeral(), expected.is_number());
        ASSERT_EQ(e->is_boolean(), expected.m_kind == naive_type::boolean);
        ASSERT_EQ(e->is_bitvector(), expected.m_kind == naive_type::bitvector);
    }
}

TEST(type_random, the_first_fault_is_found_at_its_node) {
    unsigned faults = 0;
    std::set<std::string> messages;
    for (unsigned seed = 0; seed < vexor_test::rounds(2000); ++seed) {
        SCOPED_TRACE(seed);
        ast_manager m;
        random_terms random(m, seed);
        random.set_fault_percent(1 + seed % 10);
        expr* e = random.random_term(random.random_type(1), 2 + seed % 4);
        SCOPED_TRACE(to_text(e));
        std::string expected = "well-typed";
        int expected_pos = -2;
        try {
            naive_check(e);
        } catch (naive_fault const& f) {
            expected = f.m_message;
            expected_pos = m.get_position(f.m_node).m_pos;
            ++faults;
        }
        messages.insert(expected);
        std::string found = "well-typed";
        int found_pos = -2;
        try {
            type_check(e);
        } catch (type_checker_exception const& ex) {
            found = ex.what_core();
            found_pos = ex.get_position().m_pos;
        }
        ASSERT_EQ(found, expected);
        ASSERT_EQ(found_pos, expected_pos);
        // Typing terms that nobody checked: a type, or a message, and the same one again.
        for (int round = 0; round < 2; ++round) {
            try {
                ASSERT_NE(e->get_type(), nullptr);
            } catch (type_checker_exception const&) {
                ASSERT_NE(expected, "well-typed");
            }
        }
    }
    // The generator is worth its name.
    EXPECT_GT(faults, vexor_test::rounds(400));
    EXPECT_GT(messages.size(), 20U) << testing::PrintToString(messages);
}

TEST(type_random, shared_terms_pass_and_print) {
    for (unsigned seed = 0; seed < vexor_test::rounds(100); ++seed) {
        SCOPED_TRACE(seed);
        ast_manager m;
        random_terms random(m, seed);
        random.set_sharing(true);
        expr* e = random.random_formula(5);
        std::string before = to_text(e);
        ASSERT_NO_THROW(type_check(e)) << before;
        // The definitions of the graph, put in place of their numbers, give the tree.
        pp::layout_config config;
        config.m_single_line = true;
        std::ostringstream out;
        pp_dag_visitor()(e, false)->display(out, 0, config);
        std::string dag = out.str();
        std::map<std::string, std::string> definitions;
        std::size_t i = 0;
        auto expand = [&](auto&& self, bool one_form) -> std::string {
            std::string result;
            int depth = 0;
            while (i < dag.size()) {
                if (dag[i] == '#') {
                    std::string number;
                    for (++i; i < dag.size() && isdigit(dag[i]) != 0; ++i) number += dag[i];
                    if (i < dag.size() && dag[i] == '(') definitions[number] = self(self, true);
                    result += definitions.at(number);
                    continue;
                }
                if (dag[i] == '(') ++depth;
                if (dag[i] == ')') --depth;
                result += dag[i++];
                if (one_form && depth == 0) break;
            }
            return result;
        };
        ASSERT_EQ(expand(expand, false), to_text(e)) << dag;
    }
}

} // namespace
} // namespace vexor
