// What calls of functions were reduced to.
//
// Functions that call others twice with the same arguments, each defined by the next, would otherwise be
// unfolded 2^n times. The arguments are compared as terms: the two calls are nodes of their own.
#pragma once

#include "ast/node/nodes.h"
#include "base/hash_table.h"
#include "base/shared_ptr.h"

namespace vexor {

class call_results {
public:
    // The result of the same call, null when there was none.
    expr* find(lambda_expr* fun, expr* const* args, unsigned n);
    // Keeps function, arguments and result.
    void insert(lambda_expr* fun, expr* const* args, unsigned n, expr* result);
    // Can the result of a call stand for another one? Not if the function brings auxiliary variables along:
    // they must come into being where the call is.
    bool is_reusable(lambda_expr* fun);
    void reset();

private:
    // The parts of a call stand in m_kept: function, arguments, result.
    struct call {
        call_results* m_table;
        unsigned m_first; // in m_kept
        unsigned m_num_args;
    };
    struct call_hash {
        std::size_t operator()(call const& c) const;
    };
    struct call_equality {
        bool operator()(call const& a, call const& b) const;
    };

    call push(lambda_expr* fun, expr* const* args, unsigned n);

    shared_ptr_vector<expr> m_kept;
    hash_set<call, call_hash, call_equality> m_calls;
    hash_map<expr*, bool, fast_ptr_hash<expr>> m_reusable; // see is_reusable
};

} // namespace vexor
