// Term-level if-then-else. Terms leave this pass as they came: whoever reads the result meets the choice
// between two terms as an `ite` application.
#pragma once

#include "ast/visit/map_ext_visitor.h"

namespace vexor {

class eliminate_term_ite_visitor : public map_ext_visitor {
public:
    eliminate_term_ite_visitor()
        : map_ext_visitor(false) {}

    shared_ptr<expr> operator()(expr* e) { return e; }
};

} // namespace vexor
