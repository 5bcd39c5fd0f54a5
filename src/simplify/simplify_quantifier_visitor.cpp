#include "simplify/simplify_quantifier_visitor.h"

#include "base/deep_stack.h"
#include "simplify/pull_nested_quantifier_visitor.h"
#include "simplify/simplify_visitor.h"

namespace vexor {

namespace {

bool is_same(quantified_expr* q, bool is_forall, shared_ptr_vector<var_decl> const& variables, expr* body) {
    if (is_a<forall_expr>(q) != is_forall || q->num_bindings() != variables.size() || q->get_expr() != body)
        return false;
    for (unsigned i = 0; i < variables.size(); ++i)
        if (q->get_binding(i) != variables[i]) return false;
    return true;
}

shared_ptr<expr> mk_quantifier(quantified_expr* original, bool is_forall,
                               shared_ptr_vector<var_decl> const& variables, expr* body) {
    if (is_same(original, is_forall, variables, body)) return original;
    int pos = original->get_pos();
    if (is_forall) return mk<forall_expr>(variables.data(), variables.size(), body, pos);
    return mk<exists_expr>(variables.data(), variables.size(), body, pos);
}

} // namespace

// Each round makes the body smaller or ends the loop.
shared_ptr<expr> simplify_quantifier_visitor::operator()(quantified_expr* original, bool is_forall,
                                                         shared_ptr_vector<var_decl>& variables, expr* body) {
    check_depth();
    bool negated = false;
    shared_ptr<expr> rest = body;
    shared_ptr_vector<expr> outside;
    for (;;) {
        if (is_app_of<not_name_expr>(rest.get())) {
            is_forall = !is_forall;
            negated = !negated;
            rest = to_app(rest.get())->get_arg(0);
        } else if (!join_nested(is_forall, variables, rest)) {
            break;
        }
    }
    m_occurs.set_variables(variables.data(), variables.size());
    shared_ptr_vector<expr> with;
    if (is_app_of<or_name_expr>(rest.get())) {
        divide_args_with_and_without_refs(to_app(rest.get()), with, outside);
        if (!outside.empty()) rest = mk_disjunction(body->get_manager(), with);
    } else {
        m_occurs.note(rest.get());
    }
    drop_unused(variables);
    shared_ptr<expr> result = rest;
    if (!variables.empty()) {
        bool again = !outside.empty() && with.size() == 1;
        result = again ? (*this)(original, is_forall, variables, rest.get())
                       : mk_quantifier(original, is_forall, variables, rest.get());
    }
    if (!outside.empty()) {
        shared_ptr_vector<expr> all;
        all.push_back(result.get());
        all.append(outside);
        result = mk_disjunction(body->get_manager(), all);
    }
    return negated ? mk_not(result.get()) : result;
}

bool simplify_quantifier_visitor::join_nested(bool is_forall, shared_ptr_vector<var_decl>& variables,
                                              shared_ptr<expr>& body) {
    if (!body->is_quantified_expr() || is_a<forall_expr>(body.get()) != is_forall) return false;
    pull_nested_quantifier_visitor pull(m_owner, is_forall, variables);
    shared_ptr<expr> inner = pull(body.get());
    if (inner.get() == body.get()) return false;
    body = inner;
    return true;
}

void simplify_quantifier_visitor::divide_args_with_and_without_refs(application* a,
                                                                    shared_ptr_vector<expr>& with,
                                                                    shared_ptr_vector<expr>& without) {
    for (expr* arg : a->get_args()) {
        bool depends = m_occurs.note(arg);
        (depends ? with : without).push_back(arg);
    }
}

// From the last to the first, since the type of a variable may name those before it.
void simplify_quantifier_visitor::drop_unused(shared_ptr_vector<var_decl>& variables) {
    shared_ptr_vector<var_decl> used;
    for (unsigned i = variables.size(); i-- > 0;) {
        if (!m_occurs.has_occurred(variables[i])) continue;
        used.push_back(variables[i]);
        type* of = variables[i]->get_type();
        if (of != nullptr && of->has_free_vars()) m_occurs.note(of);
    }
    variables.reset();
    for (unsigned i = used.size(); i-- > 0;) variables.push_back(used[i]);
}

shared_ptr<expr> simplify_quantifier_visitor::mk_disjunction(ast_manager* m,
                                                             shared_ptr_vector<expr> const& disjuncts) {
    simplify_or_visitor all(m_owner);
    for (expr* e : disjuncts) all.add_image(e, false);
    return all.to_expr(m, -1);
}

} // namespace vexor
