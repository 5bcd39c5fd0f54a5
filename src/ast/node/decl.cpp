#include "ast/node/decl.h"

#include "ast/node/nodes.h"
#include "ast/visit/borrowed_visitor.h"
#include "ast/visit/kind_visitors.h"

#include <string>

namespace vexor {

decl::decl(identifier* id, int pos)
    : ast(pos)
    , m_id_node(id) {}

ustring decl::get_name() const { return m_id_node.get() == nullptr ? ustring() : m_id_node->get_name(); }

void decl::set_id(identifier* id) {
    m_id_node = id;
    reset_cache();
}

var_decl::var_decl(identifier* id, type* t, int pos)
    : decl(id, pos)
    , m_type(t)
    , m_num_name_exprs(0) {}

var_decl::~var_decl() { VEXOR_ASSERT(m_num_name_exprs == 0); }

shared_ptr<name_expr> var_decl::create_name_expr(int pos) { return mk<name_expr>(this, pos); }

shared_ptr<var_decl> var_decl::clone() const { return mk<var_decl>(get_id_node(), get_type(), get_pos()); }

void var_decl::set_type(type* t) {
    m_type = t;
    reset_cache();
}

bool var_decl::is_boolean() const { return m_type.get() != nullptr && bool_kind_visitor()(m_type.get()); }
bool var_decl::is_int() const { return m_type.get() != nullptr && int_kind_visitor()(m_type.get()); }
bool var_decl::is_numeral() const { return m_type.get() != nullptr && num_kind_visitor()(m_type.get()); }

bool var_decl::is_aux() const { return get_id_node() != nullptr && get_id_node()->is_aux(); }

void var_decl::dec_num_name_exprs() {
    VEXOR_ASSERT(m_num_name_exprs > 0);
    --m_num_name_exprs;
}

fresh_var_decl::fresh_var_decl(type* t, int pos)
    : var_decl(nullptr, t, pos) {}

ustring fresh_var_decl::get_name() const {
    return ustring("aux!").append(ustring(std::to_string(get_id()).c_str()));
}

shared_ptr<var_decl> fresh_var_decl::clone() const { return mk<fresh_var_decl>(get_type(), get_pos()); }

field::field(identifier* id, type* t, int pos)
    : var_decl(id, t, pos) {}

shared_ptr<var_decl> field::clone() const { return mk<field>(get_id_node(), get_type(), get_pos()); }

let_decl::let_decl(identifier* id, type* t, expr* definition, int pos)
    : var_decl(id, t, pos)
    , m_definition(definition) {}

let_decl::~let_decl() = default;

shared_ptr<var_decl> let_decl::clone() const {
    return mk<let_decl>(get_id_node(), get_declared_type(), get_definition(), get_pos());
}

void let_decl::infer_type(type* t) {
    VEXOR_ASSERT(get_declared_type() == nullptr);
    var_decl::set_type(t);
    m_is_type_inferred = true;
}

void let_decl::set_type(type* t) {
    var_decl::set_type(t);
    m_is_type_inferred = false;
}

void let_decl::set_definition(expr* e) {
    m_definition = e;
    reset_cache();
}

type_decl::type_decl(identifier* id, type* definition, int pos)
    : decl(id, pos)
    , m_definition(definition) {
    set_free_vars_state(free_vars_state::none);
}

type_decl::~type_decl() = default;

shared_ptr<type_name> type_decl::create_type_name(int pos) { return mk<type_name>(this, pos); }

void type_decl::set_definition(type* t) {
    m_definition = t;
    reset_cache();
}

#define VEXOR_BUILTIN_TYPE(X)                                                                                \
    shared_ptr<type_name> X##_decl::create_type_name(int pos) { return mk<X##_type_name>(this, pos); }
#include "ast/node/builtin_types.def"

#define VEXOR_OP(X, TEXT, SIGNATURE, FAMILY)                                                                 \
    shared_ptr<name_expr> X##_decl::create_name_expr(int pos) { return mk<X##_name_expr>(this, pos); }
#include "ast/node/builtin_ops.def"

} // namespace vexor
