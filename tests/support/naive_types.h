// A second type checker, written from the rules for small terms: no caches, no visitors, types as plain
// values.
//
// It shares no code with the checker it is compared with. Types are compared up to what matters for checking:
// all types of integers are integer, a subtype is the type that it is taken from, parameters have no names.
#pragma once

#include "ast/node/nodes.h"

#include <string>
#include <vector>

namespace vexor_test {

struct naive_type {
    enum kind { boolean, integer, real, number, bitvector, tuple, record, function, nominal };
    kind m_kind = boolean;
    unsigned m_size = 0;               // of a bit-vector
    vexor::decl* m_decl = nullptr;     // of a nominal type
    std::vector<std::string> m_fields; // names of a record, sorted
    std::vector<naive_type> m_parts;   // of a tuple or record; of a function the parameters and the range

    bool operator==(naive_type const&) const = default;
    bool is_number() const { return m_kind == integer || m_kind == real || m_kind == number; }
};

// What is thrown for the first fault.
struct naive_fault {
    vexor::ast const* m_node;
    std::string m_message;
};

naive_type naive_type_from(vexor::type* t);
// Same up to integers being reals.
bool naive_equivalent(naive_type const& a, naive_type const& b);
// Checks a term with everything below it and gives its type; throws naive_fault.
naive_type naive_check(vexor::expr* e);
// Checks a type that stands in a term.
void naive_check_type(vexor::type* t);

} // namespace vexor_test
