// The self-check of the manager: recounts references and names from all nodes that exist.
#include "ast/node/ast_manager.h"
#include "ast/node/ast_manager_imp.h"
#include "ast/visit/for_each_visitor.h"

namespace vexor {

namespace {

using counts = hash_map<ast const*, unsigned, fast_ptr_hash<ast>>;

// Counts the references that one node holds, without going further.
class held_references_visitor : public for_each_visitor {
public:
    explicit held_references_visitor(counts& c)
        : m_counts(c) {}

    void count(ast* n) {
        n->accept(this);
        if (n->is_expr()) accept(static_cast<expr*>(n)->get_cached_type());
    }
    void accept(ast* child) override {
        if (child != nullptr) ++m_counts[child];
    }

    using for_each_visitor::visit;
    void visit(name_expr* n) override { accept(n->get_decl()); }
    void visit(type_name* n) override { accept(n->get_decl()); }
    void visit(typed_constant* n) override { accept(n->get_decl()); }
    void visit(subrange* n) override {
        for_each_visitor::visit(n);
        accept(n->get_decl());
        accept(n->get_pred());
    }

private:
    counts& m_counts;
};

// The const_decls and types of the tables stand under their own names, and each name of an owned declaration
// is there.
void check_names(ast_manager_imp const& imp) {
    for ([[maybe_unused]] auto const& e : imp.m_const_decls) VEXOR_ASSERT(e.m_key == e.m_value->get_name());
    for ([[maybe_unused]] auto const& e : imp.m_type_decls) VEXOR_ASSERT(e.m_key == e.m_value->get_name());
    for (decl* d : imp.m_decls) {
        if (d->is_type_decl())
            VEXOR_ASSERT(*imp.m_type_decls.find(d->get_name()) == d);
        else
            VEXOR_ASSERT(*imp.m_const_decls.find(d->get_name()) == d);
    }
    [[maybe_unused]] unsigned last = 0;
    for (unsigned size : imp.m_scopes) {
        VEXOR_ASSERT(last <= size && size <= imp.m_decls.size());
        last = size;
    }
}

} // namespace

// Cost: linear in the nodes that exist.
void ast_manager::check_invariant() const {
    m_store->check_invariant();
    counts references;
    counts names;
    held_references_visitor held(references);
    m_store->for_each_live([&](void* cell) {
        auto* n = static_cast<ast*>(cell);
        held.count(n);
        if (n->is_expr() && static_cast<expr*>(n)->is_name_expr())
            ++names[static_cast<name_expr*>(n)->get_decl()];
    });
    m_store->for_each_live([&](void* cell) {
        auto* n = static_cast<ast*>(cell);
        VEXOR_ASSERT(n->get_manager() == this);
        [[maybe_unused]] unsigned const* count = references.find(n);
        VEXOR_ASSERT(n->get_ref_count() >= (count == nullptr ? 0 : *count));
        auto* d =
            n->is_decl() && !static_cast<decl*>(n)->is_type_decl() ? static_cast<var_decl*>(n) : nullptr;
        if (d == nullptr) return;
        [[maybe_unused]] unsigned const* num_names = names.find(d);
        VEXOR_ASSERT(d->get_num_name_exprs() == (num_names == nullptr ? 0 : *num_names));
    });
    check_names(*m_imp);
    for ([[maybe_unused]] const_decl* d : m_ops) VEXOR_ASSERT(find_const_decl(d->get_name()) == d);
}

} // namespace vexor
