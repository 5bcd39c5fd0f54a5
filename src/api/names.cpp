// Declarations by name, and all of them in turn.
#include "api/context_wrapper.h"
#include "ast/node/nodes.h"
#include "search/var_decl_iterator.h"

using namespace vexor;

namespace {

var_decl_iterator& to_iterator(vexor_var_decl_iterator it, char const* function = __builtin_FUNCTION()) {
    if (it == nullptr) misuse(function, "the iterator is null");
    return *reinterpret_cast<var_decl_iterator*>(it);
}

// A declaration that the context knows, whoever made it.
vexor_var_decl hand_out(var_decl* d) {
    if (d != nullptr) note_handle_alive(d);
    return handle_of(d);
}

} // namespace

extern "C" {

vexor_var_decl_iterator vexor_create_var_decl_iterator(vexor_context ctx) {
    return reinterpret_cast<vexor_var_decl_iterator>(new var_decl_iterator(&to_context(ctx)));
}

int vexor_iterator_has_next(vexor_var_decl_iterator it) { return to_iterator(it).has_next() ? 1 : 0; }

vexor_var_decl vexor_iterator_next(vexor_var_decl_iterator it) {
    var_decl_iterator& walk = to_iterator(it);
    return walk.has_next() ? hand_out(walk.next()) : nullptr;
}

void vexor_iterator_reset(vexor_var_decl_iterator it) { to_iterator(it).reset(); }

void vexor_del_iterator(vexor_var_decl_iterator it) { delete &to_iterator(it); }

vexor_var_decl vexor_get_var_decl(vexor_expr e) {
    expr* const name = to_expr(e);
    return name->is_name_expr() ? hand_out(static_cast<name_expr*>(name)->get_decl()) : nullptr;
}

const char* vexor_get_var_decl_name(vexor_var_decl d) { return to_decl(d)->get_name().c_str(); }

vexor_var_decl vexor_get_var_decl_from_name(vexor_context ctx, const char* name) {
    ast_manager* const manager = to_wrapper(ctx).get_manager();
    if (name == nullptr) misuse(__func__, "the name is null");
    return hand_out(manager->find_const_decl(name));
}

} // extern "C"
