// A small set of scope levels above 0, for what a result depends on.
//
// Keeps:   the greatest levels exactly, at most capacity of them; m_rest is 0 or an upper bound of the
// others. So the
//          greatest member is never below the true one, and is exact unless more than capacity levels came
//          in.
#pragma once

#include "base/debug.h"

namespace vexor {

class level_set {
public:
    // The greatest member, 0 for none.
    unsigned max() const { return m_size > 0 ? m_levels[0] : m_rest; }

    void insert(unsigned level) {
        if (level == 0) return;
        unsigned i = 0;
        while (i < m_size && m_levels[i] > level) ++i;
        if (i < m_size && m_levels[i] == level) return;
        if (i == capacity) {
            if (level > m_rest) m_rest = level;
            return;
        }
        if (m_size == capacity) {
            if (m_levels[capacity - 1] > m_rest) m_rest = m_levels[capacity - 1];
        } else {
            ++m_size;
        }
        for (unsigned j = m_size - 1; j > i; --j) m_levels[j] = m_levels[j - 1];
        m_levels[i] = level;
    }
    void insert(level_set const& other) {
        for (unsigned i = 0; i < other.m_size; ++i) insert(other.m_levels[i]);
        if (other.m_rest > m_rest) m_rest = other.m_rest;
    }
    // The scopes above the level have ended.
    void cut(unsigned level) {
        unsigned drop = 0;
        while (drop < m_size && m_levels[drop] > level) ++drop;
        if (drop > 0) {
            for (unsigned i = drop; i < m_size; ++i) m_levels[i - drop] = m_levels[i];
            m_size -= drop;
        }
        if (m_rest > level) m_rest = level;
    }

private:
    static constexpr unsigned capacity = 8;

    unsigned m_levels[capacity] = {}; // descending, the first m_size count
    unsigned m_size = 0;
    unsigned m_rest = 0; // see above
};

} // namespace vexor
