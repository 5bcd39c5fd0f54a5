#include "internalize/eval_in_model_visitor.h"

#include "ast/node/ast_manager.h"
#include "base/diagnostics.h"
#include "internalize/default_ast_internalization_visitor.h"
#include "search/context.h"
#include "simplify/simplify.h"

#include <iostream>

namespace vexor {

namespace {

void trace(char const* title, expr* e) {
    if (get_verbosity_level() > 1) std::cerr << "\n" << title << ":\n  " << *e << "\n";
}

} // namespace

// Variables bound by the expression have a value in no model.
void eval_in_model_visitor::visit(name_expr* n) {
    if (find_env(n->get_decl()) != nullptr) {
        map_ext_visitor::visit(n);
        return;
    }
    if (expr* const value = m_model.get_value_for(n->get_decl())) {
        m_result = value;
        return;
    }
    int const var = m_context->get_bool_var_for(n->get_decl());
    int const value = var == null_bool_var ? 0 : m_model.value(var);
    if (value == 0)
        map_ext_visitor::visit(n);
    else
        m_result = value > 0 ? n->get_manager()->mk_true() : n->get_manager()->mk_false();
}

// Definitions are expanded first, so that the names in them get their values too.
void default_ast_internalization_visitor::eval_in_model(model const& m, shared_ptr<expr>& e) {
    trace("Original formula", e.get());
    basic_simplify(e);
    eval_in_model_visitor visitor(m_context, m);
    run_visitor(visitor, e);
    trace("After substitution", e.get());
    basic_simplify(e);
    trace("After simplification", e.get());
}

} // namespace vexor
