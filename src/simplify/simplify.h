// The rewriting passes that an assertion goes through before it is internalized.
//
// All functions replace the expression in the shared pointer; the old one goes when nobody else holds it.
// Terms of any depth are handled, on the deep stack.
#pragma once

#include "ast/node/nodes.h"
#include "base/deep_stack.h"
#include "base/shared_ptr.h"

namespace vexor {

class context;

// One pass of simplify_visitor: for the evaluation of terms in a model.
void basic_simplify(shared_ptr<expr>& e);

// The full pipeline: simplify_visitor, hash consing, elimination of term-ites. The result is made of `or` and
// `not`, without lets, definitions and updates of tuples and records. Each step is announced on the error
// stream at a verbosity above 9.
void simplify(shared_ptr<expr>& e);

// The same for an assertion of a context.
void simplify(shared_ptr<expr>& e, context* c);

// Runs the visitor; variables and conditions that it made on the way are closed around the result.
template <class V>
void run_visitor(V& v, shared_ptr<expr>& e) {
    on_deep_stack([&] {
        shared_ptr<expr> image = v(e.get());
        if constexpr (requires { v.context(); })
            e = v.context().close(image.get());
        else
            e = image;
    });
}

// One run of a new visitor V.
template <class V>
void apply(shared_ptr<expr>& e) {
    V v;
    run_visitor(v, e);
}

} // namespace vexor
