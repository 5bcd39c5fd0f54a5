#include "ast/types/equivalent_types.h"

#include "ast/node/ast_manager.h"
#include "base/deep_stack.h"

namespace vexor {

namespace {

bool is_nominal(type* definition) {
    return definition == nullptr || is_a<scalar_type>(definition) || is_a<datatype>(definition);
}

bool is_builtin_name(type* t) {
#define VEXOR_BUILTIN_TYPE(X)                                                                                \
    if (is_a<X##_type_name>(t)) return true;
#include "ast/node/builtin_types.def"
    return false;
}

// Of the classes that have a declaration.
bool is_name(type* t) { return is_a<type_name>(t) || is_builtin_name(t); }

bool is_integer_name(type* t) { return is_a<int_type_name>(t) || is_a<nat_type_name>(t); }

// What tells a type without components apart: its declaration, real standing for the integers too, or a
// bit-vector type. Null for a type with components.
ast* flat_key(type* t) {
    type* core = core_type(t);
    if (is_a<bitvector_type>(core)) return core;
    if (is_integer_name(core)) core = core->get_manager()->create_real_type();
    return is_name(core) ? static_cast<type_name*>(core)->get_decl() : nullptr;
}

bool same_flat_type(ast* a, ast* b) {
    if (a == b) return true;
    return is_a<bitvector_type>(a) && is_a<bitvector_type>(b) &&
           static_cast<bitvector_type*>(a)->get_size() == static_cast<bitvector_type*>(b)->get_size();
}

} // namespace

type* core_type(type* t) {
    while (!is_builtin_name(t)) {
        type* next = t->cast_step();
        if (next == nullptr || (is_a<type_name>(t) && is_nominal(next))) break;
        t = next;
    }
    return t;
}

void supertype_visitor::visit(type_name* n) {
    type* definition = n->get_definition();
    if (is_nominal(definition))
        keep(n);
    else
        m_result = map(definition).get();
}

void supertype_visitor::visit(subtype* n) { m_result = map(n->get_decl()->get_type()).get(); }

void supertype_visitor::visit_integers(type* n) {
    ast_manager* m = n->get_manager();
    m_result = m_int_only ? m->create_int_type() : m->create_real_type();
}

bool equivalent_types(type* a, type* b) {
    if (a == b) return true;
    ast* key_a = flat_key(a);
    ast* key_b = flat_key(b);
    if (key_a != nullptr && key_b != nullptr) return same_flat_type(key_a, key_b);
    if (a->equals(b)) return true;
    supertype_visitor largest(false);
    shared_ptr<type> largest_a = largest(a);
    shared_ptr<type> largest_b = largest(b);
    return largest_a->equals(largest_b);
}

} // namespace vexor
