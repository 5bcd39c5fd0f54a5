// The manager's factories for types that declare names of their own.
#include "ast/node/ast_exceptions.h"
#include "ast/node/ast_manager.h"
#include "ast/node/settings.h"

namespace vexor {

void type_check(ast* n); // type_checker.h

shared_ptr<subtype> ast_manager::create_subtype_for_pred(var_decl* pred, int pos) {
    auto* t = cast_type<function_type>(pred->get_type());
    if (t == nullptr || t->get_arity() != 1)
        throw subtype_predicate_exception(get_position(pos), pred->get_name());
    shared_ptr<identifier> id = mk<identifier>(this, ustring("arg"), -1);
    shared_ptr<var_decl> arg = mk<var_decl>(id, t->get_param_type(0), -1);
    shared_ptr<name_expr> fun = pred->create_name_expr(pos);
    shared_ptr<name_expr> value = arg->create_name_expr(pos);
    shared_ptr<application> member = mk<application>(fun, value, pos);
    return mk<subtype>(arg, member, pos);
}

namespace {

// Names that are about to be declared together: none twice, none in use.
class constant_buffer {
public:
    explicit constant_buffer(ast_manager* m)
        : m_manager(m) {}

    void check(identifier* id) { check(id->get_name(), id->get_pos()); }
    void check(ustring const& name, int pos) {
        if (m_manager->is_global_name_expr(name) || !m_names.insert(name))
            throw constant_already_defined_exception(m_manager->get_position(pos), name);
    }

private:
    ast_manager* m_manager;
    hash_set<ustring, hash_ustring> m_names; // seen so far
};

void check_names(constant_buffer& names, constructor_decl* c) {
    names.check(c->get_id_node());
    names.check(c->get_name().append(ustring("?")), c->get_pos());
    for (unsigned i = 0; i < c->num_accessors(); ++i) names.check(c->get_accessor(i)->get_id_node());
}

void check_types(constructor_decl* c) {
    type_check(c);
    if (c->get_recognizer() != nullptr) type_check(c->get_recognizer());
    for (unsigned i = 0; i < c->num_accessors(); ++i) type_check(c->get_accessor(i));
}

} // namespace

shared_ptr<scalar_type> ast_manager::create_scalar_type(type_decl* d, identifier* const* ids, unsigned n,
                                                        int pos) {
    if (n == 0) throw empty_scalar_type_exception(get_position(pos));
    constant_buffer names(this);
    for (unsigned i = 0; i < n; ++i) names.check(ids[i]);
    shared_ptr<scalar_type> t = mk<scalar_type>(d, ids, n, pos);
    for (scalar_element_decl* e : t->get_elements()) add_global_const_decl(e, false);
    return t;
}

shared_ptr<datatype> ast_manager::create_datatype(constructor_decl* const* constructors, unsigned n,
                                                  int pos) {
    if (n == 0) throw empty_datatype_exception(get_position(pos));
    bool founded = false;
    for (unsigned i = 0; i < n; ++i) founded = founded || !constructors[i]->is_recursive_constructor();
    if (!founded) throw invalid_datatype_exception(get_position(pos));
    constant_buffer names(this);
    for (unsigned i = 0; i < n; ++i) check_names(names, constructors[i]);
    if (g_type_check)
        for (unsigned i = 0; i < n; ++i) check_types(constructors[i]);
    shared_ptr<datatype> t = mk<datatype>(this, constructors, n, pos);
    t->setup();
    return t;
}

} // namespace vexor
