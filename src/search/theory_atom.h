// The theory side of a Boolean variable.
#pragma once

#include "base/debug.h"
#include "search/literal.h"

namespace vexor {

class theory_port;

// Base of what a theory, or the congruence closure itself, hangs on a Boolean variable. There are no virtual
// functions: the hub finds the owner by its number and hands the atom over, and the owner knows the class.
//
// An atom belongs to its owner, which makes the variable by theory_port::new_atom and destroys the atom in
// undo_base_level_trail, newest first, when the user scope of the variable is closed. The search only borrows
// it.
class theory_atom {
public:
    theory_atom(theory_atom const&) = delete; // the search holds its address
    theory_atom& operator=(theory_atom const&) = delete;

    [[nodiscard]] int var() const { return m_var; }
    // The literal that says that the atom holds.
    [[nodiscard]] literal lit() const {
        VEXOR_ASSERT(m_var != null_bool_var);
        return literal(m_var);
    }
    // Who the atom belongs to, in the hub's numbering.
    [[nodiscard]] int owner() const { return m_owner; }

protected:
    explicit theory_atom(int owner)
        : m_owner(owner) {}
    ~theory_atom() = default;

private:
    friend class theory_port;

    int m_var = null_bool_var; // set by theory_port::new_atom, for good
    int m_owner;               // see owner
};

} // namespace vexor
