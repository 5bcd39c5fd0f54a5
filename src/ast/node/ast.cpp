#include "ast/node/ast.h"

#include "ast/node/ast_manager.h"
#include "ast/visit/borrowed_visitor.h"
#include "ast/visit/eq_visitor.h"
#include "ast/visit/free_vars_visitor.h"
#include "ast/visit/hash_visitor.h"
#include <string>

namespace vexor {

void* allocate_node(ast_manager* manager, std::size_t bytes) {
    VEXOR_ASSERT(manager != nullptr);
    return manager->allocate_cell(bytes);
}

ast::ast(int pos)
    : m_hash(0)
    , m_free_vars_state(0)
    , m_id(get_manager()->take_id())
    , m_pos(pos) {}

void ast::reset_cache() {
    m_hash = 0;
    set_free_vars_state(free_vars_state::unknown);
}

position_tracker::position ast::get_position() const { return get_manager()->get_position(this); }

unsigned ast::hash() {
    if (m_hash != 0) return m_hash;
    borrowed_visitor<hash_visitor> v;
    return (*v)(this);
}

bool ast::equals(ast* other) {
    if (this == other) return true;
    if (other == nullptr) return false;
    borrowed_visitor<eq_visitor> v;
    return (*v)(this, other);
}

bool ast::has_free_vars() {
    if (get_free_vars_state() == free_vars_state::unknown) {
        borrowed_visitor<free_vars_visitor> v;
        (*v)(this);
    }
    return get_free_vars_state() != free_vars_state::none;
}

identifier::identifier(ast_manager*, ustring const& name, int pos)
    : ast(pos)
    , m_name(name) {
    set_free_vars_state(free_vars_state::none);
}

identifier::identifier(identifier const* other)
    : identifier(other, other->get_name()) {}

identifier::identifier(identifier const* other, ustring const& name)
    : ast(other->get_pos())
    , m_name(name) {
    set_free_vars_state(free_vars_state::none);
}

namespace {

ustring generated_name(unsigned id) { return ustring("aux:").append(ustring(std::to_string(id).c_str())); }

} // namespace

identifier::identifier(type const*)
    : ast(-1)
    , m_name(generated_name(get_id())) {
    set_free_vars_state(free_vars_state::none);
}

void identifier::set_name(ustring const& name) {
    if (name == m_name) return;
    m_name = name;
    reset_cache();
}

bool identifier::is_aux() const { return get_pos() == -1 && m_name == generated_name(get_id()); }

shared_ptr<identifier> identifier::clone() const { return mk<identifier>(this); }

} // namespace vexor
