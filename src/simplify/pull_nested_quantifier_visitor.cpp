#include "simplify/pull_nested_quantifier_visitor.h"

#include "ast/visit/substitution.h"
#include "base/deep_stack.h"
#include "simplify/simplify_visitor.h"

namespace vexor {

shared_ptr<expr> pull_nested_quantifier_visitor::walk(expr* e) {
    check_depth();
    if (e->is_quantified_expr()) return open(static_cast<quantified_expr*>(e));
    bool is_not = is_app_of<not_name_expr>(e);
    if (!is_not && !is_app_of<or_name_expr>(e)) return e;
    bool shared = !e->is_fanout_one();
    if (shared)
        if (shared_ptr<expr> const* known = m_images[m_positive].find(e)) return *known;
    shared_ptr<expr> result;
    if (is_not) {
        m_positive = !m_positive;
        shared_ptr<expr> arg = walk(to_app(e)->get_arg(0));
        m_positive = !m_positive;
        result = arg.get() == to_app(e)->get_arg(0) ? shared_ptr<expr>(e) : mk_not(arg.get());
    } else {
        result = walk_or(to_app(e));
    }
    if (shared) m_images[m_positive].insert(e, result);
    return result;
}

shared_ptr<expr> pull_nested_quantifier_visitor::walk_or(application* a) {
    simplify_visitor::image_list images(m_owner);
    for (expr* arg : a->get_args()) {
        shared_ptr<expr> image = walk(arg);
        images.push_back(image.get());
    }
    if (!images.differs_from(a->get_args())) return a;
    simplify_or_visitor all(m_owner);
    all.set_max_copied(max_copied); // the number of quantifiers that are opened is limited
    for (unsigned i = 0; i < images.size(); ++i) all.add_image(images[i], false);
    return all.to_expr(a->get_manager(), a->get_pos());
}

shared_ptr<expr> pull_nested_quantifier_visitor::open(quantified_expr* q) {
    bool same_polarity = is_a<forall_expr>(q) == (m_forall == m_positive);
    if (!same_polarity || m_variables.size() + q->num_bindings() > max_variables) return q;
    shared_ptr<binding_expr> opened = q;
    if (binds_known_variable(q)) opened = alpha_convert(q);
    for (var_decl* d : opened->get_bindings()) m_variables.push_back(d);
    return opened->get_expr();
}

bool pull_nested_quantifier_visitor::binds_known_variable(quantified_expr* q) const {
    for (var_decl* d : q->get_bindings())
        if (m_variables.contains(d)) return true;
    return false;
}

} // namespace vexor
