// A map_visitor for passes that make auxiliary variables.
//
// What a node carries (fresh_vars_expr, local_context_expr) moves into the current temporary_context, and
// each binder and each local definition opens one for its body and wraps the image with what came together
// there: nothing escapes the binder that it depends on. An image that brought something into a context is
// remembered as long as that context is open, since outside of it the variables do not exist.
#pragma once

#include "ast/node/temporary_context.h"
#include "ast/visit/map_visitor.h"

#include <vector>

namespace vexor {

class map_ext_visitor : public map_visitor {
public:
    using map_visitor::map_visitor;
    void reset() override;

    // Where variables and conditions made now belong to. Whoever asks is about to add to it: the image being
    // computed is taken to depend on it.
    temporary_context& context();

    using map_visitor::visit;
    void visit(fresh_vars_expr* n) override;
    void visit(local_context_expr* n) override;

protected:
    // Both map e in a context of its own, and close the image with it.
    shared_ptr<expr> map_body(expr* e) override;
    shared_ptr<expr> map_definition(expr* e) override { return map_body(e); }

private:
    struct open_context {
        temporary_context m_context;
        unsigned m_level; // scope of the environment it lives in
    };

    temporary_context m_root;           // of the whole run; the caller closes the result with it
    std::vector<open_context*> m_stack; // contexts of the open binders, innermost last
};

} // namespace vexor
