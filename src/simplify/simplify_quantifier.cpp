// Quantifiers and auxiliary variables.
#include "ast/node/ast_manager.h"
#include "ast/types/equivalent_types.h"
#include "ast/types/type_pred_visitor.h"
#include "simplify/pull_nested_quantifier_visitor.h"
#include "simplify/simplify_quantifier_visitor.h"
#include "simplify/simplify_visitor.h"

namespace vexor {

// Quantifiers of one class that stand directly in each other are one, and are taken together from the start:
// joining them one by one would copy the growing list of variables for each.
void simplify_visitor::visit(quantified_expr* n) {
    bool is_forall = is_a<forall_expr>(n);
    scope s(*this);
    shared_ptr_vector<var_decl> variables;
    shared_ptr_vector<expr> restrictions;
    bind_quantified(n, variables, restrictions);
    expr* inner = n->get_expr();
    while (inner->get_cls_name() == n->get_cls_name() && inner->is_fanout_one()) {
        bind_quantified(static_cast<quantified_expr*>(inner), variables, restrictions);
        inner = static_cast<quantified_expr*>(inner)->get_expr();
    }
    shared_ptr<expr> body = map_body(inner);
    body = restrict_body(is_forall, restrictions, body.get());
    pull_nested_quantifier_visitor pull(*this, is_forall, variables);
    body = pull(body.get());
    simplify_quantifier_visitor build(*this, m_occurrences);
    m_result = build(n, is_forall, variables, body.get());
}

// A variable of a subtype becomes one of the type around it, beside the restriction. Otherwise a second pass
// would restrict it again, at a place where the variable may have got to by then: the exists in
// (exists (x) (or (exists (y::t) (p y)) (q x))), moved out, must not ask for a y when (q x) holds.
//
// The restriction is simplified right behind the binding: a variable further in may be the same one again.
void simplify_visitor::bind_quantified(quantified_expr* n, shared_ptr_vector<var_decl>& variables,
                                       shared_ptr_vector<expr>& restrictions) {
    type_pred_visitor predicate(false);
    for (var_decl* d : n->get_bindings()) {
        shared_ptr<name_expr> name = d->create_name_expr(-1);
        shared_ptr<expr> member = predicate(d->get_type(), name.get());
        shared_ptr<type> widened = d->get_type();
        if (member.get() != nullptr) widened = supertype_visitor(true)(d->get_type());
        bool is_restricted = widened.get() != d->get_type() && !widened->equals(d->get_type());
        shared_ptr<var_decl> image = bind_variable(d, is_restricted ? widened.get() : d->get_type());
        variables.push_back(image.get());
        if (!is_restricted) continue;
        member = image_of(member.get());
        if (!is_true(member.get())) restrictions.push_back(member.get());
    }
}

// (forall (x::t) A)  to  (forall (x) (or (not (t x)) A)),  (exists (x::t) A)  to  (exists (x) (and (t x) A))
shared_ptr<expr> simplify_visitor::restrict_body(bool is_forall, shared_ptr_vector<expr> const& restrictions,
                                                 expr* body) {
    if (restrictions.empty()) return body;
    {
        simplify_or_visitor known(*this);
        known.add_image(body, !is_forall);
        unsigned size = known.size();
        for (expr* e : restrictions) known.add_image(e, true);
        if (known.size() == size && !known.is_true()) return body;
    }
    simplify_or_visitor all(*this);
    for (expr* e : restrictions) all.add_image(e, true);
    all.add_image(body, !is_forall);
    shared_ptr<expr> result = all.to_expr(body->get_manager(), -1);
    return is_forall ? result : mk_not(result.get());
}

// An auxiliary variable that comes up twice, with a lambda that is applied twice, is two variables.
void simplify_visitor::visit(fresh_vars_expr* n) {
    scope s(*this);
    shared_ptr_vector<var_decl> images;
    for (var_decl* d : n->get_bindings()) images.push_back(bind_variable(d, d->get_type()).get());
    shared_ptr<expr> body = image_of(n->get_expr());
    for (var_decl* d : images) context().add_fresh_var(d);
    m_result = body.get();
}

} // namespace vexor
