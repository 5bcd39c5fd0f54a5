// Recursive definitions are the cycles of the graph of definitions.
//
// Keeps:   every definition that is not on the stack and was entered is settled; one on the stack reaches
// each one
//          above it.
// Ends:    a settled definition is not entered again.
// Cost:    linear in the definitions that are entered; each is settled once for all.
// Source:  Tarjan: Depth-first search and linear graph algorithms, SIAM J. Computing 1(2), 1972.
#include "ast/visit/recursion.h"

#include "ast/visit/for_each_visitor.h"
#include "base/deep_stack.h"

#include <vector>

namespace vexor {

namespace {

// The constants with a definition that an expression names.
class used_definitions_visitor : public for_each_visitor {
public:
    std::vector<const_decl*> m_used;

    using for_each_visitor::visit;
    void visit(name_expr* n) override {
        if (n->get_decl()->is_local()) return;
        auto* d = static_cast<const_decl*>(n->get_decl());
        if (d->has_definition()) m_used.push_back(d);
    }
    void visit(immutable_name_expr*) override {}
};

class definition_cycles {
public:
    void enter(const_decl* d) {
        check_depth();
        unsigned index = ++m_next_index;
        m_states.insert(d, state{index, index, true});
        m_stack.push_back(d);
        used_definitions_visitor v;
        v(d->get_raw_definition());
        bool names_itself = false;
        unsigned low = index;
        for (const_decl* used : v.m_used) {
            if (used->knows_recursion()) continue; // settled earlier: no cycle through d
            if (used == d) names_itself = true;
            if (!m_states.contains(used)) enter(used);
            state const& s = *m_states.find(used);
            if (s.m_on_stack && s.m_low < low) low = s.m_low;
        }
        m_states.find(d)->m_low = low;
        if (low == index) settle(d, names_itself);
    }

private:
    struct state {
        unsigned m_index; // order of entering
        unsigned m_low;   // least index known to be reachable on the stack
        bool m_on_stack;
    };

    // The component of d, the top of the stack, is complete.
    void settle(const_decl* d, bool names_itself) {
        bool recursive = names_itself || m_stack.back() != d;
        const_decl* member;
        do {
            member = m_stack.back();
            m_stack.pop_back();
            m_states.find(member)->m_on_stack = false;
            member->settle_recursion(recursive);
        } while (member != d);
    }

    hash_map<const_decl*, state, fast_ptr_hash<const_decl>> m_states; // of the definitions entered
    std::vector<const_decl*> m_stack;                                 // not yet settled, in order of entering
    unsigned m_next_index = 0;                                        // number of definitions entered
};

} // namespace

void find_recursive_definitions(const_decl* d) {
    on_deep_stack([d] { definition_cycles().enter(d); });
}

} // namespace vexor
