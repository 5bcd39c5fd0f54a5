#include "ast/visit/substitution.h"

#include "base/deep_stack.h"

namespace vexor {

shared_ptr<expr> beta_reduce(application* a) {
    if (!a->get_fun()->is_lambda()) return a;
    auto* fun = static_cast<lambda_expr*>(a->get_fun());
    if (fun->num_bindings() != a->num_args()) return a;
    subst_visitor v(false);
    for (unsigned i = 0; i < a->num_args(); ++i) v.update_env(fun->get_binding(i), a->get_arg(i));
    return v(fun->get_expr());
}

namespace {

// Renames the variables of the outermost binder.
class alpha_visitor : public map_visitor {
public:
    alpha_visitor()
        : map_visitor(false) {}

    shared_ptr<binding_expr> rename(binding_expr* b) {
        scope s(*this);
        shared_ptr_vector<var_decl> images;
        for (var_decl* d : b->get_bindings()) {
            shared_ptr<type> t = map(d->get_type());
            shared_ptr<var_decl> image = mk<var_decl>(d->get_id_node(), t, d->get_pos());
            update_env(d, image.get());
            images.push_back(image.get());
        }
        shared_ptr<expr> body = map(b->get_expr());
        return b->clone(images.data(), images.size(), body.get());
    }
};

} // namespace

shared_ptr<binding_expr> alpha_convert(binding_expr* b) {
    return on_deep_stack([b] { return alpha_visitor().rename(b); });
}

} // namespace vexor
