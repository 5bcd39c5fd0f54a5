// What the search core asks of the translation of formulas.
#pragma once

#include "ast/node/ast_fwd.h"
#include "base/shared_ptr.h"
#include "search/literal.h"

namespace vexor {

class context;
class model;

// Turns expressions into clauses, gates and, through the theories, atoms. A context without one knows only
// clauses.
//
// An assertion comes in two steps, so that nothing of a formula that cannot be handled ever reaches the
// context: prepare raises every exception, and assert_prepared raises none of its own.
class internalizer {
public:
    virtual ~internalizer() = default;

    // The formula, which is Boolean, in the form that assert_prepared takes: simplified and looked through
    // for what is not supported, which raises feature_not_implemented_exception.
    [[nodiscard]] virtual shared_ptr<expr> prepare(expr* e) = 0;
    // Asserts e, or e or guard if the guard is not null_literal.
    virtual void assert_prepared(expr* e, literal guard) = 0;
    // The literal of a Boolean formula that was prepared.
    virtual literal accept_boolean(expr* e, bool negated) = 0;
    // Replaces e by its value in the model, as far as the model tells.
    virtual void eval_in_model(model const& m, shared_ptr<expr>& e) = 0;
    // Follows the user scopes of the context, and its reset.
    virtual void push() {}
    virtual void pop() {}
    virtual void reset() {}
};

} // namespace vexor
