// The free variables of a new node without binders, as far as its children know theirs: most terms never need
// a traversal to learn that they are closed.
#pragma once

#include "ast/node/ast.h"
#include "ast/node/child_array.h"

namespace vexor {

class known_free_vars {
public:
    void add(ast const* child) {
        if (child == nullptr) return;
        free_vars_state s = child->get_free_vars_state();
        if (s == free_vars_state::some)
            m_state = s;
        else if (s == free_vars_state::unknown && m_state == free_vars_state::none)
            m_state = s;
    }
    template <class T>
    void add_all(child_array<T> const& children) {
        for (T* child : children) add(child);
    }
    free_vars_state get_state() const { return m_state; }

private:
    free_vars_state m_state = free_vars_state::none; // of a node with the children added so far
};

} // namespace vexor
