// Rebuilds a term: each visit leaves the image of its node in m_result, the same node when nothing changed.
//
// A substitution is kept in an environment. Below a binder the environment maps the old variables to the new
// ones; where it holds an expression with free variables, binders below get new variables, so that nothing is
// captured.
//
// Keeps:   m_closed_cache holds images of nodes that hold everywhere in the run; m_local_cache those that
// hold as
//          long as the bindings they were made with (see binding_env). Entries hold references on node and
//          image.
// Cost:    one visit per shared node and binding of its free variables; no allocation for an unchanged term.
#pragma once

#include "ast/node/nodes.h"
#include "ast/visit/ast_visitor.h"
#include "ast/visit/var_env.h"

#include <iosfwd>

namespace vexor {

class map_visitor : public ast_visitor {
public:
    // cache_all: remember the images of nodes with one reference, too.
    explicit map_visitor(bool cache_all)
        : m_env(&m_own_env)
        , m_cache_all(cache_all) {}
    map_visitor(var_env* env, bool cache_all)
        : m_env(env)
        , m_cache_all(cache_all) {}
    map_visitor(map_visitor const&) = delete; // m_env may point into the object
    map_visitor& operator=(map_visitor const&) = delete;

    // Drops what was remembered, and maps a.
    shared_ptr<ast> operator()(ast* a);
    shared_ptr<expr> operator()(expr* e) { return static_cast<expr*>((*this)(static_cast<ast*>(e)).get()); }
    shared_ptr<type> operator()(type* t) { return static_cast<type*>((*this)(static_cast<ast*>(t)).get()); }

    // The image of a; null for null. For use within a run.
    virtual shared_ptr<ast> accept_core(ast* a);
    template <class T>
    shared_ptr<T> map(T* n) {
        return static_cast<T*>(accept_core(n).get());
    }

    var_env* get_env() const { return m_env; }
    // Null restores the visitor's own environment.
    void set_env(var_env* env);
    // Binds the variable in the current scope. Null and anonymous variables are ignored, and so is the
    // identity where nothing is to be shadowed.
    void update_env(var_decl* d, ast* value);
    // The image of a variable, null for one that stands for itself. Every visit that replaces names asks
    // here.
    ast* find_env(var_decl* d);
    void begin_scope() { m_env->begin_scope(); }
    void end_scope() { m_env->end_scope(); }
    // Drops what was remembered, and the bindings of the visitor's own environment.
    virtual void reset();
    void display_env(std::ostream& out) const;

    using ast_visitor::visit;
    void visit(ast* n) override { m_result = n; }
    void visit(var_decl* n) override;
    void visit(let_decl* n) override;
    void visit(const_decl* n) override { keep(n); }
    void visit(function_type* n) override;
    void visit(tuple_type* n) override;
    void visit(record_type* n) override;
    void visit(subtype* n) override;
    void visit(subrange* n) override;
    void visit(record_entry* n) override;
    void visit(name_expr* n) override;
    void visit(immutable_name_expr* n) override { keep(n); }
    void visit(expr* fun, application* a) override;
    void visit(binding_expr* n) override;
    void visit(let_expr* n) override;
    void visit(local_context_expr* n) override;
    void visit(function_update_expr* n) override;
    void visit(tuple_update_expr* n) override;
    void visit(record_update_expr* n) override;
    void visit(tuple_literal* n) override;
    void visit(tuple_selection* n) override;
    void visit(record_literal* n) override;
    void visit(record_selection* n) override;

protected:
    // Scope of a binder, also left by an exception.
    class scope {
    public:
        explicit scope(map_visitor& v)
            : m_env(v.m_env) {
            m_env->begin_scope();
        }
        scope(scope const&) = delete;
        scope& operator=(scope const&) = delete;
        ~scope() { m_env->end_scope(); }

    private:
        var_env* m_env; // in which it was opened
    };

    void keep(ast* n) { m_result = n; }
    // Leaves in m_result what the environment says about the name.
    void apply_subst(name_expr* n);
    // Maps the variables of a binder one by one and enters their images in the current scope; true when one
    // changed.
    template <class T>
    bool map_bindings(child_array<T> const& bindings, shared_ptr_vector<T>& images) {
        bool changed = false;
        for (T* d : bindings) {
            shared_ptr<var_decl> image = map_binding(d);
            changed |= image.get() != d;
            images.push_back(static_cast<T*>(image.get()));
        }
        return changed;
    }
    shared_ptr<var_decl> map_binding(var_decl* d);
    // Maps all children; true when one changed.
    template <class T>
    bool map_children(child_array<T> const& children, shared_ptr_vector<T>& images) {
        bool changed = false;
        for (T* child : children) {
            shared_ptr<T> image = map(child);
            changed |= image.get() != child;
            images.push_back(image.get());
        }
        return changed;
    }
    // Must binders get new variables? True while the environment holds something that they could capture.
    virtual bool renames_bound_variables() const { return m_env->num_capturable() > 0; }
    // The image of what a binder binds over, and of a local definition.
    virtual shared_ptr<expr> map_body(expr* e) { return map(e); }
    virtual shared_ptr<expr> map_definition(expr* e) { return map(e); }

    shared_ptr<ast> m_result; // image of the last node visited

private:
    struct closed_entry {
        shared_ptr<ast> m_node; // key, kept alive
        shared_ptr<ast> m_image;
    };
    struct local_entry {
        shared_ptr<ast> m_node; // key, kept alive
        shared_ptr<ast> m_image;
        var_env::mark m_mark{}; // until when the image is valid
    };

    bool find_cached(ast* a);
    void remember(ast* a);

    hash_map<ast*, closed_entry, fast_ptr_hash<ast>> m_closed_cache; // see above
    hash_map<ast*, local_entry, fast_ptr_hash<ast>> m_local_cache;   // see above
    var_env m_own_env;                                               // used unless another one is set
    var_env* m_env;                                                  // the substitution
    bool m_cache_all;                                                // see the constructor
};

// Replaces free variables only: a closed node is its own image.
class subst_visitor : public map_visitor {
public:
    using map_visitor::map_visitor;
    shared_ptr<ast> accept_core(ast* a) override;
};

} // namespace vexor
