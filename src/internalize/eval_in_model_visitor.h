// Replaces names by their values in a model.
#pragma once

#include "ast/visit/map_ext_visitor.h"

namespace vexor {

class context;
class model;

// Rebuilds an expression with what the model knows about its names; a name without a value stays.
class eval_in_model_visitor : public map_ext_visitor {
public:
    eval_in_model_visitor(vexor::context* ctx, model const& m)
        : map_ext_visitor(true)
        , m_context(ctx)
        , m_model(m) {}

    using map_ext_visitor::visit;
    void visit(name_expr* n) override;

private:
    vexor::context* m_context; // whose variables the model values
    model const& m_model;
};

} // namespace vexor
