// The run, names and binders.
#include "simplify/simplify_visitor.h"

#include "ast/node/ast_manager.h"
#include "ast/node/unsupported.h"
#include "base/deep_stack.h"
#include "simplify/free_variables.h"

namespace vexor {

simplify_visitor::image_list::image_list(simplify_visitor& v, child_array<expr> const& terms)
    : image_list(v) {
    for (expr* t : terms) {
        shared_ptr<expr> image = v.image_of(t);
        push_back(image.get());
    }
}

bool simplify_visitor::image_list::differs_from(child_array<expr> const& terms) const {
    for (unsigned i = 0; i < terms.size(); ++i)
        if ((*this)[i] != terms[i]) return true;
    return false;
}

// Variables that are free in the input are known before any binder is met: a binder of one of them, which an
// image could be moved into, gets a new variable.
shared_ptr<expr> simplify_visitor::operator()(expr* e) {
    m_manager = e->get_manager();
    return on_deep_stack([&] {
        if (e->has_free_vars()) {
            for (var_decl* d : free_variables_of(e))
                if (m_image_variables.insert(d)) m_kept_variables.push_back(d);
        }
        return map_ext_visitor::operator()(e);
    });
}

// Uses of a name are nodes of their own: remembering the image of each would cost more than to look again.
shared_ptr<ast> simplify_visitor::accept_core(ast* a) {
    if (a == nullptr || !a->is_expr() || !static_cast<expr*>(a)->is_name_expr())
        return map_ext_visitor::accept_core(a);
    m_result.reset();
    a->accept(this);
    return m_result;
}

shared_ptr<expr> simplify_visitor::image_of(expr* e) {
    accept_core(e);
    shared_ptr<expr> image = static_cast<expr*>(m_result.get());
    m_result.reset();
    return image;
}

void simplify_visitor::reset() {
    map_ext_visitor::reset();
    m_images.reset();
    m_or_lists = {};
    m_definitions.reset();
    m_calls.reset();
    m_image_variables.reset();
    m_kept_variables.reset();
    m_unfold_depth = m_num_unfoldings = 0;
}

shared_ptr<expr> simplify_visitor::convert_name_expr(name_expr* n, bool expand_recursive, bool& changed) {
    changed = false;
    var_decl* d = n->get_decl();
    if (d->is_const_decl()) {
        auto* c = static_cast<const_decl*>(d);
        if (!c->has_definition() || (c->is_recursive() && !expand_recursive)) return n;
        changed = true;
        return definition_of(c);
    }
    ast* value = find_env(d);
    if (value == nullptr) return n;
    if (!value->is_decl()) return static_cast<expr*>(value);
    shared_ptr<name_expr> renamed = n->clone();
    renamed->set_decl(static_cast<var_decl*>(value));
    return renamed;
}

// The same node for every use, so that its image is remembered. A recursive definition is applied within
// itself, and its variables then have several values at once: each use has variables of its own.
shared_ptr<expr> simplify_visitor::definition_of(const_decl* d) {
    if (d->is_recursive()) return d->get_definition();
    if (shared_ptr<expr> const* known = m_definitions.find(d)) return *known;
    return m_definitions.insert(d, d->get_definition());
}

void simplify_visitor::visit(name_expr* n) {
    bool changed;
    shared_ptr<expr> e = convert_name_expr(n, m_unfold_recursive, changed);
    if (!changed) {
        m_result = e.get();
    } else if (is_recursive(n)) {
        // A constant that is defined by itself has no smaller form.
        if (m_unfold_depth >= max_unfold_depth) throw_not_implemented("recursive functions", n);
        unfolding guard(*this, n);
        accept_core(e.get());
    } else {
        accept_core(e.get());
    }
}

simplify_visitor::unfolding::unfolding(simplify_visitor& v, name_expr* n)
    : m_visitor(v) {
    if (v.m_num_unfoldings == max_unfoldings)
        throw_not_implemented("too many calls of recursive functions", n);
    ++v.m_num_unfoldings;
    ++v.m_unfold_depth;
}

// Built-in names and those of data types stand for themselves.
void simplify_visitor::visit(immutable_name_expr* n) { keep(n); }

// Enters an image of the variable, of the given type: itself, or a new one where the type is another one or
// other images know the variable already.
shared_ptr<var_decl> simplify_visitor::bind_variable(var_decl* d, type* of) {
    shared_ptr<type> image_type = of;
    if (of != nullptr && of->has_free_vars()) {
        accept_core(of);
        image_type = static_cast<type*>(m_result.get());
    }
    shared_ptr<var_decl> image = d;
    if (image_type.get() != d->get_type() || m_image_variables.contains(d)) {
        image = d->clone();
        image->set_type(image_type);
    }
    if (m_image_variables.insert(image.get())) m_kept_variables.push_back(image.get());
    if (!d->is_anonymous()) get_env()->bind(d, image.get(), false);
    return image;
}

void simplify_visitor::visit(let_expr* n) {
    scope s(*this);
    for (let_decl* d : n->get_bindings()) {
        shared_ptr<expr> image = image_of(d->get_definition());
        update_env(d, image.get());
    }
    accept_core(n->get_expr());
}

void simplify_visitor::visit(binding_expr* n) {
    scope s(*this);
    shared_ptr_vector<var_decl> bindings;
    bool changed = false;
    for (var_decl* d : n->get_bindings()) {
        shared_ptr<var_decl> image = bind_variable(d, d->get_type());
        changed |= image.get() != d;
        bindings.push_back(image.get());
    }
    shared_ptr<expr> body = map_body(n->get_expr());
    if (changed || body.get() != n->get_expr())
        m_result = n->clone(bindings.data(), bindings.size(), body.get()).get();
    else
        keep(n);
}

} // namespace vexor
