// What stands behind the handles of the full interface.
#pragma once

#include "api/misuse.h"
#include "api/vexor.h"
#include "ast/node/ast_manager.h"
#include "base/shared_ptr.h"
#include "base/vector.h"
#include "search/context.h"

namespace vexor {

// A context with the manager of its terms and a reference on each node that was handed out: a caller in C
// cannot keep references.
//
// Keeps: one entry of m_object_lims for each user scope.
class context_wrapper {
public:
    context_wrapper();
    context_wrapper(context_wrapper const&) = delete; // owns manager and context
    context_wrapper& operator=(context_wrapper const&) = delete;
    ~context_wrapper();

    [[nodiscard]] context& get_context() const { return *m_context; }
    [[nodiscard]] ast_manager* get_manager() const { return m_context->get_manager(); }

    // Keeps the node until the pop of the present scope.
    template <class T>
    T* keep(shared_ptr<T> const& node) {
        m_objects.push_back(node.get());
        note_handle_alive(node.get());
        return node.get();
    }
    void push();
    // There must be a scope.
    void pop();
    [[nodiscard]] bool has_scope() const { return !m_object_lims.empty(); }
    void reset();
    unsigned take_fresh_id() { return m_next_fresh_id++; }

private:
    void release_objects(unsigned size);

    shared_ptr_vector<ast> m_objects; // everything handed out, newest last
    svector<unsigned> m_object_lims;  // size of m_objects at each push
    context* m_context;               // owned, as is its manager
    unsigned m_next_fresh_id = 1;     // number of the next fresh Boolean
};

// --- From handles to what they are and back. Null, a call from the search callback, and in debug builds
// a dead handle or one of another kind, ends the process in the name of the exported function.

inline context_wrapper& to_wrapper(vexor_context ctx, char const* function = __builtin_FUNCTION()) {
    if (ctx == nullptr) misuse(function, "the context is null");
    check_no_callback(function);
    return *reinterpret_cast<context_wrapper*>(ctx);
}

inline context& to_context(vexor_context ctx, char const* function = __builtin_FUNCTION()) {
    return to_wrapper(ctx, function).get_context();
}

inline model& to_model(vexor_model m, char const* function = __builtin_FUNCTION()) {
    if (m == nullptr) misuse(function, "the model is null");
    check_no_callback(function);
    return *reinterpret_cast<model*>(m);
}

inline expr* to_expr(vexor_expr e, char const* function = __builtin_FUNCTION()) {
    if (e == nullptr) misuse(function, "an expression is null");
    expr* const result = reinterpret_cast<expr*>(e);
    check_handle_alive(result, function);
    VEXOR_ASSERT(result->is_expr());
    return result;
}

inline type* to_type(vexor_type t, char const* function = __builtin_FUNCTION()) {
    if (t == nullptr) misuse(function, "a type is null");
    type* const result = reinterpret_cast<type*>(t);
    check_handle_alive(result, function);
    VEXOR_ASSERT(result->is_type());
    return result;
}

inline var_decl* to_decl(vexor_var_decl d, char const* function = __builtin_FUNCTION()) {
    if (d == nullptr) misuse(function, "a declaration is null");
    var_decl* const result = reinterpret_cast<var_decl*>(d);
    check_handle_alive(result, function);
    VEXOR_ASSERT(result->is_decl());
    return result;
}

// --- The same for a handle that must belong to the manager's context: a term with parts of two contexts would
// outlive one of them.

template <class Node>
Node* of_manager(Node* node, ast_manager const* manager, char const* what, char const* function) {
    if (node->get_manager() != manager) misuse(function, what);
    return node;
}

inline expr* to_expr(vexor_expr e, ast_manager const* manager, char const* function = __builtin_FUNCTION()) {
    return of_manager(to_expr(e, function), manager, "an expression belongs to another context", function);
}

inline type* to_type(vexor_type t, ast_manager const* manager, char const* function = __builtin_FUNCTION()) {
    return of_manager(to_type(t, function), manager, "a type belongs to another context", function);
}

inline var_decl* to_decl(vexor_var_decl d, ast_manager const* manager,
                         char const* function = __builtin_FUNCTION()) {
    return of_manager(to_decl(d, function), manager, "a declaration belongs to another context", function);
}

inline vexor_expr handle_of(expr* e) { return reinterpret_cast<vexor_expr>(e); }
inline vexor_type handle_of(type* t) { return reinterpret_cast<vexor_type>(t); }
inline vexor_var_decl handle_of(var_decl* d) { return reinterpret_cast<vexor_var_decl>(d); }

// The nodes behind an array of handles of one context: a copy that is small for few of them.
class expr_array {
public:
    expr_array(vexor_expr const* handles, unsigned n, ast_manager const* manager,
               char const* function = __builtin_FUNCTION()) {
        if (n > 0 && handles == nullptr) misuse(function, "an array is null");
        if (n > num_inline) {
            m_more.resize(n, nullptr);
            m_exprs = m_more.data();
        }
        for (unsigned i = 0; i < n; ++i) m_exprs[i] = to_expr(handles[i], manager, function);
    }
    expr_array(expr_array const&) = delete; // m_exprs points into it
    expr_array& operator=(expr_array const&) = delete;

    [[nodiscard]] expr* const* data() const { return m_exprs; }

private:
    static constexpr unsigned num_inline = 16;
    expr* m_few[num_inline];
    svector<expr*> m_more;  // used if there are more than num_inline
    expr** m_exprs = m_few; // the nodes
};

} // namespace vexor
