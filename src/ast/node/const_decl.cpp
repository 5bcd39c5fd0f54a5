// Global constants: their definitions, and which of them are recursive.
#include "ast/node/nodes.h"
#include "ast/visit/recursion.h"
#include "ast/visit/substitution.h"
#include "base/deep_stack.h"

namespace vexor {

const_decl::const_decl(identifier* id, type* t, int pos)
    : const_decl(id, t, nullptr, pos) {}

const_decl::const_decl(identifier* id, type* t, expr* definition, int pos)
    : var_decl(id, t, pos)
    , m_definition(definition) {}

const_decl::~const_decl() = default;

shared_ptr<var_decl> const_decl::clone() const { return const_cast<const_decl*>(this); }

shared_ptr<expr> const_decl::get_definition() {
    if (m_definition.get() == nullptr || m_binders == no) return m_definition;
    fresh_var_decl_visitor fresh;
    shared_ptr<expr> copy = fresh(m_definition.get());
    m_binders = copy.get() == m_definition.get() ? no : yes;
    return copy;
}

void const_decl::set_definition(expr* e) {
    m_definition = e;
    m_recursive = not_known;
    m_binders = not_known;
    reset_cache();
}

bool const_decl::is_recursive() {
    if (m_definition.get() == nullptr) return false;
    if (m_recursive == not_known) find_recursive_definitions(this);
    VEXOR_ASSERT(m_recursive != not_known);
    return m_recursive == yes;
}

} // namespace vexor
