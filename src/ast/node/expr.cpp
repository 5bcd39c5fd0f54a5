#include "ast/node/expr.h"

#include "ast/node/nodes.h"
#include "ast/visit/kind_visitors.h"

namespace vexor {

void expr::reset_cache() {
    ast::reset_cache();
    m_type.reset();
}

void expr::set_type(type* t) { m_type = t; }

bool expr::is_boolean() { return bool_kind_visitor()(this); }
bool expr::is_int() { return int_kind_visitor()(this); }
bool expr::is_numeral() { return num_kind_visitor()(this); }
bool expr::is_bitvector() { return bitvector_kind_visitor()(this); }

record_entry::record_entry(identifier* id, expr* e, int pos)
    : ast(pos)
    , m_id_node(id)
    , m_expr(e) {}

shared_ptr<record_entry> record_entry::clone() const {
    return mk<record_entry>(get_id_node(), get_expr(), get_pos());
}

void record_entry::set_id(identifier* id) {
    m_id_node = id;
    reset_cache();
}

void record_entry::set_expr(expr* e) {
    m_expr = e;
    reset_cache();
}

} // namespace vexor
