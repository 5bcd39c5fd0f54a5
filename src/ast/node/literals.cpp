#include "ast/node/literals.h"

#include "ast/node/ast_exceptions.h"
#include "ast/visit/known_free_vars.h"
#include "ast/visit/sorted_children.h"

namespace vexor {

numeral_expr::numeral_expr(ast_manager*, numeral const& value, int pos)
    : expr(pos)
    , m_value(value) {
    set_free_vars_state(free_vars_state::none);
}

shared_ptr<numeral_expr> numeral_expr::clone() const {
    return mk<numeral_expr>(get_manager(), get_value(), get_pos());
}

shared_ptr<expr> numeral_expr::clone_to_expr() const { return clone(); }

void numeral_expr::set_value(numeral const& value) {
    if (m_value == value) return;
    m_value = value;
    reset_cache();
}

bitvector_constant::bitvector_constant(ast_manager*, unsigned size, numeral const& value, int pos)
    : expr(pos)
    , m_size(size)
    , m_value(value) {
    set_free_vars_state(free_vars_state::none);
}

shared_ptr<bitvector_constant> bitvector_constant::clone() const {
    return mk<bitvector_constant>(get_manager(), get_size(), get_value(), get_pos());
}

shared_ptr<expr> bitvector_constant::clone_to_expr() const { return clone(); }

void bitvector_constant::set_size(unsigned size) {
    m_size = size;
    reset_cache();
}

void bitvector_constant::set_value(numeral const& value) {
    m_value = value;
    reset_cache();
}

tuple_literal::tuple_literal(ast_manager*, expr* const* exprs, unsigned n, int pos)
    : expr(pos)
    , m_exprs(sizeof(tuple_literal), exprs, n) {
    if (n == 0) throw empty_tuple_literal_exception(get_position());
    known_free_vars known;
    known.add_all(m_exprs);
    set_free_vars_state(known.get_state());
}

shared_ptr<tuple_literal> tuple_literal::clone() const { return clone(m_exprs.data(), m_exprs.size()); }

shared_ptr<tuple_literal> tuple_literal::clone(expr* const* exprs, unsigned n) const {
    return mk<tuple_literal>(get_manager(), exprs, n, get_pos());
}

shared_ptr<expr> tuple_literal::clone_to_expr() const { return clone(); }

void tuple_literal::set_exprs(expr* const* exprs, unsigned n) {
    m_exprs.assign(exprs, n);
    reset_cache();
}

tuple_selection::tuple_selection(expr* tuple, unsigned idx, int pos)
    : expr(pos)
    , m_tuple(tuple)
    , m_idx(idx) {
    set_free_vars_state(tuple->get_free_vars_state());
}

shared_ptr<tuple_selection> tuple_selection::clone() const {
    return mk<tuple_selection>(get_tuple(), get_idx(), get_pos());
}

shared_ptr<expr> tuple_selection::clone_to_expr() const { return clone(); }

void tuple_selection::set_tuple(expr* e) {
    m_tuple = e;
    reset_cache();
}

void tuple_selection::set_idx(unsigned idx) {
    m_idx = idx;
    reset_cache();
}

record_literal::record_literal(ast_manager*, record_entry* const* entries, unsigned n, int pos)
    : expr(pos)
    , m_entries(sizeof(record_literal), sorted_by_name(entries, n).data(), n) {
    if (n == 0) throw empty_record_literal_exception(get_position());
}

shared_ptr<record_literal> record_literal::clone() const { return clone(m_entries.data(), m_entries.size()); }

shared_ptr<record_literal> record_literal::clone(record_entry* const* entries, unsigned n) const {
    return mk<record_literal>(get_manager(), entries, n, get_pos());
}

shared_ptr<expr> record_literal::clone_to_expr() const { return clone(); }

record_entry* record_literal::find_entry(ustring const& name) const { return find_by_name(m_entries, name); }

void record_literal::set_entries(record_entry* const* entries, unsigned n) {
    m_entries.assign(sorted_by_name(entries, n).data(), n);
    reset_cache();
}

void sort_entries(record_entry** entries, unsigned n) { sort_by_name(entries, n); }

record_selection::record_selection(expr* record, identifier* id, int pos)
    : expr(pos)
    , m_record(record)
    , m_id_node(id) {
    set_free_vars_state(record->get_free_vars_state());
}

shared_ptr<record_selection> record_selection::clone() const {
    return mk<record_selection>(get_record(), get_id_node(), get_pos());
}

shared_ptr<expr> record_selection::clone_to_expr() const { return clone(); }

void record_selection::set_record(expr* e) {
    m_record = e;
    reset_cache();
}

void record_selection::set_id(identifier* id) {
    m_id_node = id;
    reset_cache();
}

typed_constant::typed_constant(type_decl* d, int value, int pos)
    : expr(pos)
    , m_decl(d)
    , m_value(value) {
    set_free_vars_state(free_vars_state::none);
}

shared_ptr<typed_constant> typed_constant::clone() const {
    return mk<typed_constant>(get_decl(), get_value(), get_pos());
}

shared_ptr<expr> typed_constant::clone_to_expr() const { return clone(); }

void typed_constant::set_decl(type_decl* d) {
    m_decl = d;
    reset_cache();
}

void typed_constant::set_value(int value) {
    m_value = value;
    reset_cache();
}

} // namespace vexor
