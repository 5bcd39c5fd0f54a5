#include "ast/visit/map_visitor.h"

#include "ast/node/settings.h"
#include "base/deep_stack.h"

#include <ostream>

namespace vexor {

shared_ptr<ast> map_visitor::operator()(ast* a) {
    m_closed_cache.reset();
    m_local_cache.reset();
    return on_deep_stack([&] { return accept_core(a); });
}

shared_ptr<ast> map_visitor::accept_core(ast* a) {
    if (a == nullptr) return nullptr;
    check_depth();
    if (!m_cache_all && a->is_fanout_one()) {
        m_result.reset();
        a->accept(this);
        return m_result;
    }
    if (find_cached(a)) return m_result;
    var_env::frame dependencies(*m_env);
    m_result.reset();
    a->accept(this);
    remember(a);
    return m_result;
}

bool map_visitor::find_cached(ast* a) {
    if (closed_entry const* e = m_closed_cache.find(a)) {
        m_result = e->m_image;
        return true;
    }
    local_entry const* e = m_local_cache.find(a);
    if (e == nullptr || !m_env->is_valid(e->m_mark)) return false;
    m_env->depend_on(e->m_mark);
    m_result = e->m_image;
    return true;
}

// An image of a closed node holds for good unless the visit noted that it depends on an open scope.
void map_visitor::remember(ast* a) {
    bool closed = g_allow_free_vars || m_env->level() > 0 ? !a->has_free_vars() : true;
    if (closed && m_env->dependency() == 0)
        m_closed_cache.insert(a, closed_entry{a, m_result});
    else
        m_local_cache.insert(a, local_entry{a, m_result, m_env->dependency_mark()});
}

void map_visitor::set_env(var_env* env) { m_env = env == nullptr ? &m_own_env : env; }

void map_visitor::update_env(var_decl* d, ast* value) {
    if (d == nullptr || d->is_anonymous()) return;
    if (d == value && m_env->peek(d) == nullptr) return;
    bool capturable = value != d && value->has_free_vars();
    if (value->is_decl()) capturable = value != d && static_cast<var_decl*>(value)->is_local();
    m_env->bind(d, value, capturable);
}

ast* map_visitor::find_env(var_decl* d) {
    shared_ptr<ast> const* value = m_env->find(d);
    return value == nullptr || value->get() == d ? nullptr : value->get();
}

void map_visitor::reset() {
    m_closed_cache.reset();
    m_local_cache.reset();
    m_own_env.reset();
    m_result.reset();
}

void map_visitor::display_env(std::ostream& out) const {
    m_env->for_each(
        [&](var_decl* d, shared_ptr<ast> const& value) { out << d->get_name() << " -> " << *value << "\n"; });
}

void map_visitor::apply_subst(name_expr* n) {
    ast* value = find_env(n->get_decl());
    if (value == nullptr) {
        m_result = n;
    } else if (value->is_decl()) {
        shared_ptr<name_expr> renamed = n->clone();
        renamed->set_decl(static_cast<var_decl*>(value));
        m_result = renamed.get();
    } else {
        m_result = value;
    }
}

shared_ptr<var_decl> map_visitor::map_binding(var_decl* d) {
    shared_ptr<var_decl> image = map(d);
    if (image.get() == d && !d->is_anonymous() && renames_bound_variables()) image = d->clone();
    if (!d->is_anonymous() && (image.get() != d || m_env->peek(d) != nullptr))
        m_env->bind(d, image.get(), false); // the image is new: nothing below can bind it
    return image;
}

} // namespace vexor
