// Definitions of variables, found by content.
#include "search/def_table.h"

#include "support/random.h"

#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace {

using namespace vexor;
using namespace vexor_test;

class def_table_test : public testing::Test {
protected:
    int add_gate(gate_kind kind, std::vector<literal> const& args) {
        m_defs.push_back(std::make_unique<aux_bool_var_def>());
        m_defs.back()->m_kind = kind;
        for (literal l : args) m_defs.back()->m_args.push_back(l);
        m_bodies.push_back(bool_var_body(m_defs.back().get()));
        return static_cast<int>(m_bodies.size()) - 1;
    }

    std::vector<std::unique_ptr<aux_bool_var_def>> m_defs;
    svector<bool_var_body> m_bodies;
    def_table m_table{m_bodies};
};

TEST_F(def_table_test, kind_order_and_sign_matter) {
    literal const a(3);
    literal const b(4);
    int const v = add_gate(gate_kind::iff_gate, {a, b});
    m_table.insert(v);
    EXPECT_EQ(m_table.find(add_gate(gate_kind::iff_gate, {a, b})), v);
    EXPECT_EQ(m_table.find(add_gate(gate_kind::iff_gate, {b, a})), null_bool_var);
    EXPECT_EQ(m_table.find(add_gate(gate_kind::or_gate, {a, b})), null_bool_var);
    EXPECT_EQ(m_table.find(add_gate(gate_kind::iff_gate, {~a, b})), null_bool_var);
    EXPECT_EQ(m_table.find(add_gate(gate_kind::iff_gate, {a})), null_bool_var);
    EXPECT_EQ(m_table.find(add_gate(gate_kind::iff_gate, {a, b, b})), null_bool_var);
}

TEST_F(def_table_test, fresh_variables_and_atoms_are_never_equal) {
    m_bodies.push_back(null_body);
    m_bodies.push_back(null_body);
    m_table.insert(0);
    EXPECT_EQ(m_table.find(1), null_bool_var);
    EXPECT_EQ(m_table.find(0), 0);
    m_bodies.push_back(bool_var_body(reinterpret_cast<theory_atom*>(64)));
    m_bodies.push_back(bool_var_body(reinterpret_cast<theory_atom*>(64)));
    m_table.insert(2);
    EXPECT_EQ(m_table.find(3), null_bool_var);
}

TEST_F(def_table_test, erase_of_a_stranger_does_nothing) {
    int const v = add_gate(gate_kind::or_gate, {literal(3), literal(4)});
    m_table.erase(v);
    m_table.insert(v);
    m_table.erase(add_gate(gate_kind::or_gate, {literal(3), literal(5)}));
    EXPECT_EQ(m_table.size(), 1u);
    EXPECT_EQ(m_table.find(v), v);
    m_table.reset();
    EXPECT_EQ(m_table.size(), 0u);
    EXPECT_EQ(m_table.find(v), null_bool_var);
}

// Insertions and removals of few definitions, so that runs of the table collide and close again.
TEST_F(def_table_test, random_acts_against_a_map) {
    std::uint64_t const seed = first_seed(1);
    SCOPED_TRACE("VEXOR_SEED=" + std::to_string(seed));
    random_stream r(seed);
    std::vector<int> probes;
    std::map<std::vector<int>, int> known; // definition to member
    auto key = [&](int var) {
        aux_bool_var_def const& d = *m_bodies[static_cast<unsigned>(var)].get_def();
        std::vector<int> k{static_cast<int>(d.m_kind)};
        for (literal l : d.m_args) k.push_back(l.index());
        return k;
    };
    for (unsigned i = 0; i < 400; ++i) {
        gate_kind const kinds[] = {gate_kind::or_gate, gate_kind::ite_gate, gate_kind::iff_gate};
        std::vector<literal> args;
        for (unsigned n = 2 + r.below(2); n > 0; --n)
            args.push_back(literal(3 + static_cast<int>(r.below(5)), r.chance(50)));
        probes.push_back(add_gate(kinds[r.below(3)], args));
    }
    for (unsigned i = 0; i < rounds(20000); ++i) {
        int const var = probes[r.below(400)];
        auto const it = known.find(key(var));
        ASSERT_EQ(m_table.find(var), it == known.end() ? null_bool_var : it->second);
        if (it == known.end()) {
            if (r.chance(60)) {
                m_table.insert(var);
                known[key(var)] = var;
            }
        } else if (r.chance(50)) {
            m_table.erase(it->second);
            known.erase(it);
        }
        ASSERT_EQ(m_table.size(), known.size());
    }
}

} // namespace
