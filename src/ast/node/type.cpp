#include "ast/node/type.h"

#include "ast/node/nodes.h"

namespace vexor {

type_name::type_name(type_decl* d, int pos)
    : type(pos)
    , m_decl(d) {
    VEXOR_ASSERT(d != nullptr);
    set_free_vars_state(free_vars_state::none);
}

type_name::~type_name() = default;

namespace {

// One step from a name to what it stands for, null for a name that stands for itself.
type* expand(type_name* n) {
    type* definition = n->get_definition();
    return definition == nullptr || definition->is_nominal() ? nullptr : definition;
}

} // namespace

ast* type_name::eq_norm() {
    type_name* n = this;
    for (;;) {
        type* next = expand(n);
        if (next == nullptr) return n;
        n = next->as_type_name();
        if (n == nullptr) return next->eq_norm();
    }
}

// The walk through names and subtypes that both kinds of node begin.
ast* compatible_representative(type* t) {
    for (;;) {
        type_name* n = t->as_type_name();
        type* next = n != nullptr ? expand(n) : t->is_nominal() ? nullptr : t->cast_step();
        if (next == nullptr) return t;
        t = next;
    }
}

ast* type_name::compatible_norm() { return compatible_representative(this); }

void type_name::set_decl(type_decl* d) {
    m_decl = d;
    reset_cache();
}

shared_ptr<type> type_name::clone() const { return mk<type_name>(get_decl(), get_pos()); }

#define VEXOR_BUILTIN_TYPE(X)                                                                                \
    shared_ptr<type> X##_type_name::clone() const { return mk<X##_type_name>(get_decl(), get_pos()); }
#include "ast/node/builtin_types.def"

type* cast_type(type* t, char const* cls_name) {
    while (t != nullptr && t->get_cls_name() != cls_name) t = t->cast_step();
    return t;
}

} // namespace vexor
