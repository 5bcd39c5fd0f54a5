// Random terms over everything the term language has: all operators, binders, literals, updates and types.
//
// The stream of terms depends on the seed alone. Terms print and read back: names are unlike reserved words,
// and a variable is used only where no other one of its name hides it.
#pragma once

#include "support/random.h"
#include "support/terms.h"

#include <string>
#include <vector>

namespace vexor_test {

class random_terms {
public:
    // Declares a scalar type, a datatype and uninterpreted and defined types; constants are declared when
    // needed.
    random_terms(vexor::ast_manager& m, std::uint64_t seed);

    // Out of a hundred places, at how many something else stands than belongs there; default 0, all is
    // well-typed.
    void set_fault_percent(unsigned percent) { m_fault_percent = percent; }
    // Are nodes used again; default false, trees.
    void set_sharing(bool flag) { m_sharing = flag; }

    // depth limits the nesting.
    vexor::type* random_type(unsigned depth);
    // A term whose type is equivalent to t, which must be closed.
    vexor::expr* random_term(vexor::type* t, unsigned depth);
    vexor::expr* random_formula(unsigned depth) { return random_term(m_terms.bool_type(), depth); }

    terms& get_terms() { return m_terms; }

private:
    using exprs = std::vector<vexor::expr*>;

    vexor::expr* term(vexor::type* t, unsigned depth);
    vexor::expr* leaf(vexor::type* t);
    vexor::expr* literal(vexor::type* t);
    vexor::expr* compound(vexor::type* t, unsigned depth);
    vexor::expr* boolean(unsigned depth);
    vexor::expr* comparison(unsigned depth);
    vexor::expr* number(unsigned depth);
    vexor::expr* bitvector(unsigned size, unsigned depth);
    vexor::expr* bitvector_structure(unsigned size, unsigned depth);
    vexor::expr* structure(vexor::type* t, unsigned depth);
    vexor::expr* function(vexor::function_type* t, unsigned depth);
    vexor::expr* selection(vexor::type* t, unsigned depth);
    vexor::expr* let(vexor::type* t, unsigned depth);
    vexor::expr* call(vexor::type* t, unsigned depth);
    vexor::expr* quantifier(unsigned depth);
    vexor::expr* list(unsigned depth);
    vexor::expr* op(char const* name, exprs args);
    vexor::expr* index(unsigned value);
    vexor::expr* constant(vexor::type* t);
    vexor::expr* visible_variable(vexor::type* t);
    vexor::var_decl* new_variable(vexor::type* t);
    vexor::expr* app(vexor::expr* fun, exprs const& args);
    bool chance(unsigned percent) { return m_random.chance(percent); }
    bool fault() { return m_fault_percent > 0 && m_random.chance(m_fault_percent); }
    char const* pick(std::vector<char const*> const& names) {
        return names[m_random.below(static_cast<unsigned>(names.size()))];
    }
    // Every node has a position of its own.
    void next_position() { m_terms.at(m_next_pos++); }

    terms m_terms;
    random_stream m_random;
    unsigned m_fault_percent = 0;            // see set_fault_percent
    bool m_sharing = false;                  // see set_sharing
    int m_next_pos = 0;                      // position of the next node
    unsigned m_num_constants = 0;            // declared so far
    std::vector<vexor::expr*> m_constants;   // uses of the constants
    std::vector<vexor::var_decl*> m_visible; // local variables, innermost last
    std::vector<vexor::expr*> m_closed;      // terms without local variables, for sharing
};

} // namespace vexor_test
