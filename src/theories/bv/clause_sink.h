// Where the clauses of a graph of gates go.
#pragma once

#include "base/vector.h"
#include "search/literal.h"

namespace vexor {

class clause_sink {
public:
    // A new variable; the result is its positive literal.
    virtual literal new_literal() = 0;
    // Holds as long as the newest variable in it.
    virtual void add_clause(svector<literal> const& lits) = 0;
    // 1 or -1 for a literal that is true or false as long as anything that is made now, otherwise 0.
    [[nodiscard]] virtual int fixed_value(literal l) const = 0;

protected:
    ~clause_sink() = default;
};

} // namespace vexor
