// The base of visitors that translate formulas into the state of a context.
#pragma once

#include "ast/visit/ast_visitor.h"
#include "search/internalizer.h"

namespace vexor {

class ast_internalization_visitor : public ast_visitor, public internalizer {
public:
    explicit ast_internalization_visitor(context* ctx)
        : m_context(ctx) {}

protected:
    context* m_context; // the owner
};

} // namespace vexor
