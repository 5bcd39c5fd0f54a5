// Construction of types, declarations and variables.
#include "api/api_exceptions.h"
#include "api/call_log.h"
#include "api/context_wrapper.h"
#include "ast/node/ast_exceptions.h"
#include "ast/node/nodes.h"
#include "ast/types/op_rules.h"

#include <string>

using namespace vexor;

namespace {

char const* name_text(char const* name, char const* function = __builtin_FUNCTION()) {
    if (name == nullptr) misuse(function, "the name is null");
    return name;
}

// A declaration without a name: a parameter or component is its type alone.
shared_ptr<var_decl> anonymous_decl(type* t) {
    return mk<var_decl>(static_cast<identifier*>(nullptr), t, -1);
}

var_decl* declare(context_wrapper& wrapper, ustring const& name, type* t) {
    ast_manager* const manager = wrapper.get_manager();
    shared_ptr<identifier> const id = mk<identifier>(manager, name, -1);
    shared_ptr<const_decl> const d = mk<const_decl>(id.get(), t, -1);
    manager->add_global_const_decl(d.get(), true);
    wrapper.keep(d);
    log_declaration(d.get());
    return d.get();
}

vexor_expr use_of(context_wrapper& wrapper, var_decl* d) {
    return handle_of(static_cast<expr*>(wrapper.keep(d->create_name_expr(-1))));
}

} // namespace

extern "C" {

vexor_type vexor_mk_type(vexor_context ctx, const char* name) {
    context_wrapper& wrapper = to_wrapper(ctx);
    ast_manager* const manager = wrapper.get_manager();
    ustring const type_text(name_text(name));
    if (!manager->is_type_name(type_text)) {
        shared_ptr<identifier> const id = mk<identifier>(manager, type_text, -1);
        shared_ptr<type_decl> const d = mk<type_decl>(id.get(), static_cast<type*>(nullptr), -1);
        manager->add_global_type_decl(d.get());
        log_declaration(d.get());
    }
    return handle_of(static_cast<type*>(wrapper.keep(manager->create_type_name(type_text, -1))));
}

vexor_type vexor_mk_function_type(vexor_context ctx, const vexor_type domain[], unsigned n,
                                  vexor_type range) {
    context_wrapper& wrapper = to_wrapper(ctx);
    ast_manager const* const manager = wrapper.get_manager();
    type* const range_type = to_type(range, manager);
    if (n > 0 && domain == nullptr) misuse(__func__, "the array is null");
    shared_ptr_vector<var_decl> params;
    for (unsigned i = 0; i < n; ++i) params.push_back(anonymous_decl(to_type(domain[i], manager)).get());
    shared_ptr<function_type> const t = mk<function_type>(params.data(), n, range_type, -1);
    return handle_of(static_cast<type*>(wrapper.keep(t)));
}

vexor_type vexor_mk_bitvector_type(vexor_context ctx, unsigned size) {
    context_wrapper& wrapper = to_wrapper(ctx);
    if (size == 0 || size > max_bitvector_size) throw invalid_bitvector_size_exception();
    shared_ptr<bitvector_type> const t = mk<bitvector_type>(wrapper.get_manager(), size, -1);
    return handle_of(static_cast<type*>(wrapper.keep(t)));
}

vexor_type vexor_mk_tuple_type(vexor_context ctx, vexor_type* types[], unsigned n) {
    context_wrapper& wrapper = to_wrapper(ctx);
    if (n > 0 && types == nullptr) misuse(__func__, "the array is null");
    shared_ptr_vector<var_decl> components;
    for (unsigned i = 0; i < n; ++i) {
        if (types[i] == nullptr) misuse(__func__, "a pointer to a type is null");
        components.push_back(anonymous_decl(to_type(*types[i], wrapper.get_manager())).get());
    }
    shared_ptr<tuple_type> const t = mk<tuple_type>(wrapper.get_manager(), components.data(), n, -1);
    return handle_of(static_cast<type*>(wrapper.keep(t)));
}

vexor_var_decl vexor_mk_bool_var_decl(vexor_context ctx, const char* name) {
    context_wrapper& wrapper = to_wrapper(ctx);
    return handle_of(declare(wrapper, name_text(name), wrapper.get_manager()->create_bool_type()));
}

vexor_var_decl vexor_mk_var_decl(vexor_context ctx, const char* name, vexor_type type) {
    context_wrapper& wrapper = to_wrapper(ctx);
    return handle_of(declare(wrapper, name_text(name), to_type(type, wrapper.get_manager())));
}

vexor_expr vexor_mk_var_from_decl(vexor_context ctx, vexor_var_decl d) {
    context_wrapper& wrapper = to_wrapper(ctx);
    return use_of(wrapper, to_decl(d, wrapper.get_manager()));
}

vexor_expr vexor_mk_bool_var_from_decl(vexor_context ctx, vexor_var_decl d) {
    context_wrapper& wrapper = to_wrapper(ctx);
    return use_of(wrapper, to_decl(d, wrapper.get_manager()));
}

vexor_expr vexor_mk_bool_var(vexor_context ctx, const char* name) {
    context_wrapper& wrapper = to_wrapper(ctx);
    ast_manager* const manager = wrapper.get_manager();
    ustring const text(name_text(name));
    var_decl* d = manager->find_const_decl(text);
    if (d == nullptr) d = declare(wrapper, text, manager->create_bool_type());
    // An operator, or a name of another type, is no Boolean variable.
    if (!d->is_boolean() || d->is_builtin())
        throw constant_already_defined_exception(manager->get_position(-1), text);
    return use_of(wrapper, d);
}

// Names that the caller has taken already are passed over.
vexor_expr vexor_mk_fresh_bool_var(vexor_context ctx) {
    context_wrapper& wrapper = to_wrapper(ctx);
    ast_manager* const manager = wrapper.get_manager();
    ustring name;
    do name = ustring(("v!" + std::to_string(wrapper.take_fresh_id())).c_str());
    while (manager->is_global_name_expr(name));
    return use_of(wrapper, declare(wrapper, name, manager->create_bool_type()));
}

} // extern "C"
