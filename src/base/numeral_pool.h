// The home of all rationals that are too large for two words.
#pragma once

#include <gmp.h>

#include "base/debug.h"

namespace vexor {

// Slots of GMP rationals, handed out by index and reused last in, first out. Slots 0 and 1 are scratch
// operands.
//
// Promises: an index stays valid until it is given back, growth included; the address of a slot only until
// the next take. The pool is made on first use and never destroyed, so static objects of any file may hold
// bignums.
class numeral_pool {
public:
    static constexpr unsigned num_scratch = 2;
    static constexpr unsigned initial_capacity = 1024;

    // A slot that holds some canonical rational.
    [[nodiscard]] static int take() {
        if (m_num_free == 0) return take_fresh();
        return m_free_idxs[--m_num_free];
    }
    static void give_back(int slot) noexcept {
        VEXOR_ASSERT(slot >= static_cast<int>(num_scratch) && static_cast<unsigned>(slot) < m_size);
        shrink_slot(m_big_nums[slot]);
        m_free_idxs[m_num_free++] = slot;
    }
    static mpq_ptr slot(int i) {
        VEXOR_ASSERT(static_cast<unsigned>(i) < m_size);
        return m_big_nums[i];
    }
    // Scratch operands may be asked for before any slot was taken.
    static mpq_ptr scratch(unsigned i) {
        if (m_size == 0) init();
        return m_big_nums[i];
    }

    static void init();
    // Gives the memory back if no slot is in use; false otherwise.
    static bool free_big_nums();

    [[nodiscard]] static unsigned capacity() { return m_capacity; }
    [[nodiscard]] static unsigned num_used() { return m_size == 0 ? 0 : m_size - num_scratch - m_num_free; }
    static void check_invariant();

private:
    // One huge value must not keep its memory for ever in a slot that small ones use afterwards.
    static constexpr int kept_limbs = 64;
    static void shrink_slot(mpq_ptr q) noexcept {
        if (mpq_numref(q)->_mp_alloc > kept_limbs || mpq_denref(q)->_mp_alloc > kept_limbs) empty_slot(q);
    }
    static void empty_slot(mpq_ptr q) noexcept;
    static int take_fresh();
    static void expand(unsigned capacity);

    static constinit mpq_t* m_big_nums;   // the slots; those below m_size are initialised
    static constinit int* m_free_idxs;    // stack of slots given back, with room for m_capacity
    static constinit unsigned m_num_free; // size of that stack
    static constinit unsigned m_size;     // first slot never handed out, 0 before init
    static constinit unsigned m_capacity; // slots allocated
};

} // namespace vexor
