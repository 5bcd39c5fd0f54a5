#include "ast/node/ast_manager.h"

#include "ast/node/ast_exceptions.h"
#include "ast/node/ast_manager_imp.h"
#include "ast/node/settings.h"
#include "ast/visit/num_nodes_visitor.h"

#include <ostream>

namespace vexor {

void type_check(ast* n); // type_checker.h

ast_manager::ast_manager()
    : m_store(new node_store(this)) {
    reset();
}

ast_manager::~ast_manager() {
    drop_everything();
    m_store->abandon();
}

void ast_manager::reset() {
    drop_everything();
    m_imp = std::make_unique<ast_manager_imp>();
    m_next_id = 0;
    declare_predefined();
}

void ast_manager::drop_everything() {
    if (m_imp == nullptr) return;
    for (shared_ptr<name_expr>& n : m_op_names) n.reset();
    for (auto* n : {&m_true, &m_false}) n->reset();
    for (auto* t : {&m_bool_type, &m_number_type, &m_real_type, &m_int_type, &m_nat_type, &m_any_type})
        t->reset();
    break_cycles();
    m_imp.reset();
}

// Recursive types and functions hold themselves through their definitions, whether their names are still
// known or not.
void ast_manager::break_cycles() {
    release_pending_shared_objs();
    shared_ptr_vector<decl> defined;
    m_store->for_each_live([&](void* cell) {
        auto* n = static_cast<ast*>(cell);
        if (n->is_decl()) defined.push_back(static_cast<decl*>(n));
    });
    for (decl* d : defined) {
        if (d->is_type_decl())
            static_cast<type_decl*>(d)->set_definition(nullptr);
        else if (static_cast<var_decl*>(d)->is_const_decl())
            static_cast<const_decl*>(d)->set_definition(nullptr);
    }
}

void ast_manager::push() { m_imp->m_scopes.push_back(m_imp->m_decls.size()); }

unsigned ast_manager::num_scopes() const { return m_imp->m_scopes.size(); }

void ast_manager::pop(unsigned n) {
    VEXOR_ASSERT(n <= num_scopes());
    for (; n > 0; --n) {
        unsigned size = m_imp->m_scopes.back();
        m_imp->m_scopes.pop_back();
        while (m_imp->m_decls.size() > size) m_imp->forget_last_decl();
    }
    VEXOR_INVARIANT(2, check_invariant());
}

const_decl* ast_manager::find_const_decl(ustring const& name) const {
    const_decl* const* d = m_imp->m_const_decls.find(name);
    return d == nullptr ? nullptr : *d;
}

type_decl* ast_manager::find_type_decl(ustring const& name) const {
    type_decl* const* d = m_imp->m_type_decls.find(name);
    return d == nullptr ? nullptr : *d;
}

bool ast_manager::is_global_name_expr(ustring const& name) const {
    return m_imp->m_const_decls.contains(name);
}

bool ast_manager::is_type_name(ustring const& name) const { return m_imp->m_type_decls.contains(name); }

var_decl* ast_manager::get_global_var_decl(ustring const& name, int pos) const {
    const_decl* d = find_const_decl(name);
    if (d == nullptr) throw undefined_name_exception(get_position(pos), name);
    return d;
}

shared_ptr<name_expr> ast_manager::create_global_name_expr(ustring const& name, int pos) {
    return get_global_var_decl(name, pos)->create_name_expr(pos);
}

shared_ptr<type_name> ast_manager::create_type_name(ustring const& name, int pos) {
    type_decl* d = find_type_decl(name);
    if (d == nullptr) throw undefined_name_exception(get_position(pos), name);
    return d->create_type_name(pos);
}

void ast_manager::add_global_type_decl(type_decl* d) {
    if (g_type_check) type_check(d);
    if (is_type_name(d->get_name())) throw type_already_defined_exception(d->get_position(), d->get_name());
    m_imp->m_type_decls.insert(d->get_name(), d);
    m_imp->m_decls.push_back(d);
}

void ast_manager::add_global_const_decl(const_decl* d, bool owned) {
    if (g_type_check) type_check(d);
    if (is_global_name_expr(d->get_name()))
        throw constant_already_defined_exception(d->get_position(), d->get_name());
    m_imp->m_const_decls.insert(d->get_name(), d);
    if (owned)
        m_imp->m_decls.push_back(d);
    else
        m_imp->keep_beyond_scopes(d);
}

shared_ptr_vector<decl> const& ast_manager::get_decls() const { return m_imp->m_decls; }
unsigned ast_manager::num_const_names() const { return m_imp->m_const_decls.size(); }
unsigned ast_manager::num_type_names() const { return m_imp->m_type_decls.size(); }

unsigned ast_manager::get_num_nodes() const {
    num_nodes_visitor v;
    for (decl* d : m_imp->m_decls) v.accumulate(d);
    return v.get_num_nodes();
}

void ast_manager::display_info(std::ostream& out) const {
    out << "problem information:\n";
    out << "  number of nodes:     " << get_num_nodes() << "\n";
    out << "  number of constants: " << num_const_names() << "\n";
    out << "  number of types:     " << num_type_names() << "\n";
}

type_name* ast_manager::create_bool_type(int) { return mk_shared_type(m_bool_type, m_bool_decl); }
type_name* ast_manager::create_number_type(int) { return mk_shared_type(m_number_type, m_number_decl); }
type_name* ast_manager::create_real_type(int) { return mk_shared_type(m_real_type, m_real_decl); }
type_name* ast_manager::create_int_type(int) { return mk_shared_type(m_int_type, m_int_decl); }
type_name* ast_manager::create_nat_type(int) { return mk_shared_type(m_nat_type, m_nat_decl); }

type_name* ast_manager::mk_shared_type(shared_ptr<type_name>& cache, type_decl* d) {
    if (cache.get() == nullptr) cache = d->create_type_name(-1);
    return cache.get();
}

expr* ast_manager::mk_shared_name(shared_ptr<name_expr>& cache, const_decl* d) {
    if (cache.get() == nullptr) cache = d->create_name_expr(-1);
    return cache.get();
}

} // namespace vexor
