// Finds a Boolean variable by its definition.
#pragma once

#include "base/vector.h"
#include "search/bool_var_body.h"

namespace vexor {

// Hash of a user's declaration for the table; by identity number, so that runs are reproducible.
unsigned decl_hash(var_decl const* decl);

// A set of variables with equal definitions counted once: declarations by identity, gates by kind and
// arguments in order. Open addressing with linear probing and backward-shift deletion, so that removed gates
// leave no tombs behind through millions of push and pop. Cost: expected constant per operation at a load of
// at most two thirds.
class def_table {
public:
    explicit def_table(svector<bool_var_body> const& bodies)
        : m_bodies(bodies) {}

    // A member whose definition equals that of probe, or null_bool_var.
    [[nodiscard]] int find(int probe) const;
    // The definition of var must not be a member yet.
    void insert(int var);
    // Removes var itself; does nothing if it is no member.
    void erase(int var);
    [[nodiscard]] unsigned size() const { return m_size; }
    void reset();

private:
    [[nodiscard]] unsigned hash(int var) const;
    [[nodiscard]] bool equal(int a, int b) const;
    // The hash stands beside its member: to compare definitions first would fetch them from all over memory.
    struct slot {
        unsigned m_hash = 0;
        int m_var = null_bool_var; // in a free slot
    };

    void grow();
    void insert_core(slot const& member);

    svector<bool_var_body> const& m_bodies; // of the context, by variable
    svector<slot> m_slots;                  // a power of two, or empty
    unsigned m_size = 0;
};

} // namespace vexor
